#!/usr/bin/env python3
"""Writes, from the headers of a HIDL package, what a service of many methods needs by the hundred:

Methods.h     per interface the names of its methods in declaration order
Raise.h/.cpp  calls a method of the callback interface by name, arguments given as JSON

usage: generate.py OUT_DIR CALLBACK_INTERFACE HEADER...
"""

import os
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
import headers

def raise_source(callback, methods):
    out = ['#include "Raise.h"', "", '#include "JsonValue.h"', "",
           "namespace qeltvd {", "", "namespace {", "", f"using Callback = {callback};",
           "using Call = bool (*)(Callback&, const nlohmann::json&);", ""]
    for name, _, parameters, answers in methods:
        arguments = [f"json_value<{headers.value_type(kind)}>(v.at({i}))"
                     for i, (kind, _) in enumerate(parameters)]
        if answers is not None:
            arguments.append(f"[]({', '.join(kind for kind, _ in answers)}) {{}}")
        out.append(f"bool call_{name}(Callback& c, [[maybe_unused]] const nlohmann::json& v) {{")
        out.append(f"    return c.{name}({', '.join(arguments)}).isOk();")
        out.append("}")
    out += ["", "struct Entry {", "    const char* name;", "    size_t arguments;",
            "    Call call;", "};", "", "constexpr Entry kEntries[] = {"]
    out += [f'    {{"{name}", {len(parameters)}, call_{name}}},'
            for name, _, parameters, _ in methods]
    out += ["};", "", "}  // namespace", "",
            "std::function<bool(Callback&)> notification(const std::string& method,",
            "                                            const nlohmann::json& values) {",
            "    for (const Entry& entry : kEntries) {",
            "        if (method != entry.name) continue;",
            "        if (!values.is_array() || values.size() != entry.arguments) {",
            '            throw std::invalid_argument(method + " takes " +',
            '                                        std::to_string(entry.arguments) + " values");',
            "        }",
            "        return [call = entry.call, values](Callback& c) { return call(c, values); };",
            "    }",
            '    throw std::invalid_argument("no notification " + method);',
            "}", "",
            "}  // namespace qeltvd", ""]
    return "\n".join(out)


def main():
    out_dir, callback, files = sys.argv[1], sys.argv[2], sys.argv[3:]
    os.makedirs(out_dir, exist_ok=True)
    namespace = None
    names = []
    for file in files:
        interface = pathlib.Path(file).stem
        text = pathlib.Path(file).read_text()
        methods = headers.generated_methods(text)
        namespaces = re.findall(r"^namespace (\w+) \{$", text, re.M)
        namespace = "::".join(namespaces[:namespaces.index("V1_0") + 1])
        names.append(f"constexpr const char* k{interface}Methods[] = {{\n"
                     + "\n".join(f'    "{m[0]}",' for m in methods) + "\n};\n")
        if interface == callback:
            with open(os.path.join(out_dir, "Raise.cpp"), "w") as f:
                f.write(raise_source(f"::{namespace}::{interface}", methods))
    with open(os.path.join(out_dir, "Methods.h"), "w") as f:
        f.write("#pragma once\n\nnamespace qeltvd {\n\n" + "\n".join(names)
                + "\n}  // namespace qeltvd\n")
    with open(os.path.join(out_dir, "Raise.h"), "w") as f:
        f.write(f"""#pragma once

#include <{namespace.replace('::', '/').replace('V1_0', '1.0')}/{callback}.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace qeltvd {{

/**
 * A call of a method of the callback interface.
 *
 * @param method its name
 * @param values its arguments, a JSON array
 * @return makes the call; false when it failed in transport
 * @throws std::exception where there is no such method or a value does not fit
 */
std::function<bool(::{namespace}::{callback}&)> notification(const std::string& method,
                                                             const nlohmann::json& values);

}}  // namespace qeltvd
""")


if __name__ == "__main__":
    main()
