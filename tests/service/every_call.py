#!/usr/bin/env python3
"""Writes a function that calls every method of every interface, from the headers of the package.

usage: every_call.py GENERATOR_DIR OUT.cpp CALLBACK_INTERFACE HEADER...
"""

import os
import sys


def calls(interface, methods):
    out = [f"void call{interface}(Values& values, const Called& called) {{",
           f"    const auto tv = {interface}::getService(\"default\", false);",
           f"    if (tv == nullptr) return called(\"{interface}\", false);"]
    for name, _, parameters, answers in methods:
        arguments = [f"values.next<{generate.value_type(kind)}>()" for kind, _ in parameters]
        if answers is not None:
            arguments.append("[](const auto&...) {}")
        out.append(f"    called(\"{name}\", tv->{name}({', '.join(arguments)}).isOk());")
    out += ["}", ""]
    return out


def main():
    out_file, callback, headers = sys.argv[2], sys.argv[3], sys.argv[4:]
    headers = [h for h in headers
               if os.path.basename(h).startswith("IQel") and os.path.basename(h) != callback + ".h"]
    out = [f"#include <vendor/qelnova/tv/qeltvapi/1.0/{os.path.basename(h)}>" for h in headers]
    out += ["", '#include "every_call.h"', "", "namespace wire {", "",
            "using namespace vendor::qelnova::tv::qeltvapi::V1_0;", ""]
    names = []
    for header in headers:
        interface = os.path.splitext(os.path.basename(header))[0]
        names.append(interface)
        out += calls(interface, generate.parse(header))
    out.append("void callEverything(Values& values, const Called& called) {")
    out += [f"    call{name}(values, called);" for name in names]
    out += ["}", "", "}  // namespace wire", ""]
    with open(out_file, "w") as f:
        f.write("\n".join(out))


if __name__ == "__main__":
    sys.path.insert(0, sys.argv[1])
    import generate
    main()
