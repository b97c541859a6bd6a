#!/usr/bin/env python3
"""Writes a function that calls every method of every interface, from the headers of the package.

usage: every_call.py OUT.cpp CALLBACK_INTERFACE HEADER...
"""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
import headers


def calls(interface, methods):
    out = [f"void call{interface}(Values& values, const Called& called) {{",
           f"    const auto tv = {interface}::getService(\"default\", false);",
           f"    if (tv == nullptr) return called(\"{interface}\", false);"]
    for name, _, parameters, answers in methods:
        arguments = [f"values.next<{headers.value_type(kind)}>()" for kind, _ in parameters]
        if answers is not None:
            arguments.append("[](const auto&...) {}")
        out.append(f"    called(\"{name}\", tv->{name}({', '.join(arguments)}).isOk());")
    out += ["}", ""]
    return out


def main():
    out_file, callback = sys.argv[1:3]
    files = [file for file in map(pathlib.Path, sys.argv[3:])
             if file.name.startswith("IQel") and file.stem != callback]
    out = [f"#include <vendor/qelnova/tv/qeltvapi/1.0/{file.name}>" for file in files]
    out += ["", '#include "every_call.h"', "", "namespace wire {", "",
            "using namespace vendor::qelnova::tv::qeltvapi::V1_0;", ""]
    for file in files:
        out += calls(file.stem, headers.generated_methods(file.read_text()))
    out.append("void callEverything(Values& values, const Called& called) {")
    out += [f"    call{file.stem}(values, called);" for file in files]
    out += ["}", "", "}  // namespace wire", ""]
    pathlib.Path(out_file).write_text("\n".join(out))


if __name__ == "__main__":
    main()
