#!/usr/bin/env python3
"""Writes, from the headers of a HIDL package, what qeltvapi/service/service.h declares:

<Interface>.h   Default and Forward of the interface
interfaces.h    includes those of all interfaces, and names them in the macro
                QELTVAPI_SERVICE_INTERFACES(APPLY)

usage: generate.py OUT_DIR CALLBACK_INTERFACE HEADER...
"""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "scripts"))
import headers

RETURN = "::android::hardware::Return"


def method(name, result, parameters, body):
    listed = ", ".join(f"{kind} {word}".strip() for kind, word in parameters)
    return (f"    {RETURN}<{result}> {name}(\n            {listed}) override {{\n"
            f"        {body}\n    }}").replace("(\n            )", "()")


def default_class(interface, methods):
    out = [f"/** {interface} without any of its functions: see Default in service.h. */",
           "template <>", f"class Default<{interface}> : public {interface} {{", "  public:",
           "    explicit Default(int32_t code = QELTV_UNSUPPORTED, bool everywhere = false)",
           "        : mCode(code), mEverywhere(everywhere) {}", ""]
    for name, result, parameters, answers in methods:
        taken = [(kind, "") for kind, _ in parameters]
        if answers is not None:
            taken.append((f"{name}_cb", "reply"))
            values = [f"{headers.value_type(kind)}{{}}" for kind, _ in answers]
            if headers.value_type(answers[-1][0]) == "int32_t":
                values[-1] = "mCode"
            # The library copies as many bytes as it has asked for, of a refusal too.
            words = [word for _, word in answers]
            if "block" in words and ("int32_t", "room") in parameters:
                taken = [(kind, word if word == "room" else "") for kind, word in parameters]
                taken.append((f"{name}_cb", "reply"))
                values[words.index("block")] = "zeros(room)"
            body = f"reply({', '.join(values)});\n        return ::android::hardware::Void();"
        elif result == "void":
            body = "return ::android::hardware::Void();"
        elif result == "int32_t":
            body = "return mCode;"
        else:
            body = f"return mEverywhere ? static_cast<{result}>(mCode) : {result}{{}};"
        out.append(method(name, result, taken, body))
    return out + ["", "  protected:", "    const int32_t mCode;", "    const bool mEverywhere;", "};"]


def forward_class(interface, methods):
    out = [f"/** {interface} as another service has it: see Forward in service.h. */",
           "template <>", f"class Forward<{interface}> : public {interface} {{", "  public:",
           f"    explicit Forward(::android::sp<{interface}> next) : mNext(std::move(next)) {{}}", ""]
    for name, result, parameters, answers in methods:
        taken, given = list(parameters), [word for _, word in parameters]
        if answers is not None:
            taken.append((f"{name}_cb", "reply"))
            given.append("std::move(reply)")
        out.append(method(name, result, taken, f"return answered(mNext->{name}({', '.join(given)}));"))
    text = "const ::android::hardware::hidl_vec<::android::hardware::hidl_string>&"
    out.append(method("debug", "void", [("const ::android::hardware::hidl_handle&", "file"),
                                        (text, "options")],
                      "return answered(mNext->debug(file, options));"))
    return out + ["", "  protected:",
                  "    /** The other implementation. */",
                  f"    const ::android::sp<{interface}> mNext;", "};"]


def guarded(name, lines):
    guard = f"QELTVAPI_SERVICE_{name.upper()}_H"
    return "\n".join([f"#ifndef {guard}", f"#define {guard}", "", *lines, "",
                      f"#endif  // {guard}", ""])


def main():
    out_dir, callback, files = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3:]
    out_dir.mkdir(parents=True, exist_ok=True)
    interfaces = []
    for file in map(pathlib.Path, files):
        interface = file.stem
        if interface == callback:
            continue
        interfaces.append(interface)
        text = file.read_text()
        methods = headers.generated_methods(text)
        namespaces = re.findall(r"^namespace (\w+) \{$", text, re.M)
        package = namespaces[:namespaces.index("V1_0") + 1]
        (out_dir / f"{interface}.h").write_text(guarded(interface, [
            f"/** The base classes of services of {interface}, written by generate.py. */", "",
            "#include <layouts/codes.h>",
            "#include <qeltvapi/service/service.h>",
            f"#include <{'/'.join(package[:-1])}/1.0/{interface}.h>",
            "", "#include <cstdint>", "#include <utility>", "",
            "namespace qeltvapi::service {", "",
            f"using ::{'::'.join(package)}::{interface};", "",
            *default_class(interface, methods), "",
            *forward_class(interface, methods), "",
            "}  // namespace qeltvapi::service"]))
    (out_dir / "interfaces.h").write_text(guarded("interfaces", [
        "/** All interfaces that a television serves. */", "",
        *(f"#include <qeltvapi/service/{interface}.h>" for interface in interfaces), "",
        "/** APPLY(interface) for each, the main interface last. */",
        "#define QELTVAPI_SERVICE_INTERFACES(APPLY) \\",
        " \\\n".join(f"    APPLY({one})" for one in sorted(interfaces, key=lambda i: (i == min(
            interfaces, key=len), i)))]))


if __name__ == "__main__":
    main()
