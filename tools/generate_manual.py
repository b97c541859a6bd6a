#!/usr/bin/env python3
"""Writes the manuals and the completion of the programs from what the programs print.

generate_manual.py qeltvctl PROGRAM DIRECTORY VERSION   qeltvctl.1 and qeltvctl.bash
generate_manual.py qeltvd PROGRAM DIRECTORY VERSION     qeltvd.8
generate_manual.py qeltv-conformance PROGRAM DIRECTORY VERSION     qeltv-conformance.1
"""
import json
import os
import pathlib
import re
import subprocess
import sys

def roff(text):
    """Escapes what has a meaning in roff."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\n".join("\\&" + line if line[:1] in ".'" else line for line in text.split("\n"))


def synopsis(path, command):
    words = [".B " + roff(" ".join(path))]
    for option in command["options"]:
        if option["positional"]:
            name = "\\fI" + roff(option["names"]) + "\\fR" + (" ..." if option["many"] else "")
            words.append(name if option["required"] else "[" + name + "]")
        elif option["names"] != "-h,--help":
            value = " \\fIVALUE\\fR" if option["takesValue"] else ""
            words.append("[\\fB" + roff(option["names"].split(",")[-1]) + "\\fR" + value + "]")
    if command["commands"]:
        words.append("\\fICOMMAND\\fR")
    return "\n".join(words)


def options(command):
    lines = []
    for option in command["options"]:
        if option["names"] == "-h,--help":
            continue
        font = "\\fI" if option["positional"] else "\\fB"
        text = roff(option["text"])
        if option["default"]:
            text += " (default " + roff(option["default"]) + ")"
        lines += [".TP", font + roff(option["names"].replace(",", ", ")) + "\\fR", text]
    return lines


def leaves(path, command):
    """All commands that can be run, with their words."""
    if not command["commands"]:
        yield path, command
    for inner in command["commands"]:
        yield from leaves(path + [inner["name"]], inner)


ENVIRONMENT = [
    ".SH ENVIRONMENT",
    ".TP",
    ".B QELTV_RUNTIME_DIR",
    "Directory in which processes find each other; otherwise hidl in $XDG_RUNTIME_DIR, or",
    "/tmp/hidl\\-UID",
]


def manual(root, version):
    name = root["name"]
    lines = [
        f'.TH {name.upper()} 1 "" "qeltvapi {version}"',
        ".SH NAME",
        f"{name} \\- " + roff(root["text"].rstrip(".")[0].lower() + root["text"].rstrip(".")[1:]),
        ".SH SYNOPSIS",
        synopsis([name], root),
        ".SH OPTIONS",
        *options(root),
        ".TP",
        "\\fB\\-h\\fR, \\fB\\-\\-help\\fR",
        "Print what a command takes, and exit",
        ".SH COMMANDS",
    ]
    for path, command in leaves([], root):
        lines += [".SS " + roff(" ".join(path)), synopsis(path, command), ".PP",
                  roff(command["text"]), *options(command)]
    if root["footer"]:
        title, _, text = root["footer"].partition(": ")
        lines += [".SH " + title.upper(), roff(text or title)]
    lines += [
        *ENVIRONMENT,
        ".TP",
        ".B QELTV_TRACE",
        "1, or names of interfaces separated by commas: a line on stderr for each call",
        ".TP",
        ".B QELTV_CALL_TIMEOUT_MS",
        "After so many milliseconds a call fails as one whose reply was lost; without it, never",
        ".SH SEE ALSO",
        ".BR qeltvd (8)",
    ]
    return "\n".join(lines) + "\n"


def arms(cases):
    return "".join(f"        {pattern}) {action} ;;\n" for pattern, action in cases)


def printed(words):
    return "printf '%s\\n' " + " ".join(f"'{word}'" for word in words)


def completion(root):
    name = root["name"]
    words, valued, values = [], [], []

    def offer(pattern, option):
        if option["offeredFrom"]:
            values.append((pattern, f'_{name}_ask "$tool" {option["offeredFrom"]}'))
        elif option["offered"]:
            values.append((pattern, printed(option["offered"])))

    def add(path, command):
        own = [inner["name"] for inner in command["commands"]]
        takers, place = [], 0
        for option in command["options"]:
            names = option["names"].split(",")
            if option["positional"]:
                offer(f'"{path}:"[0-9]*' if option["many"] else f'"{path}:{place}"', option)
                place += 1
                continue
            own += [one for one in names if one.startswith("--")]
            if option["takesValue"]:
                takers += names
                for one in names:
                    offer(f'"{path}:{one}"', option)
        words.append((f'"{path}"', printed(own)))
        if takers:
            valued.append((f'"{path}"', printed(takers)))
        for inner in command["commands"]:
            add(f"{path} {inner['name']}".strip(), inner)

    add("", root)
    commands = " ".join('"' + " ".join(path) + '"' for path in sorted(paths(root)))
    return f"""# bash completion of {name}

# Prints the commands and options that a command takes: PATH
_{name}_words() {{
    case "$1" in
{arms(words)}    esac
}}

# Prints the options of a command that take a value: PATH
_{name}_valued() {{
    case "$1" in
{arms(valued)}    esac
}}

# Prints the first column of a table of the tool: TOOL COMMAND...
_{name}_ask() {{
    timeout 2 "$@" 2>/dev/null | tail -n +2 | cut -d' ' -f1
}}

# Prints the values of an argument: PATH:PLACE or PATH:OPTION, what is typed of it, the tool
_{name}_values() {{
    local word=$2 tool=$3
    case "$1" in
{arms(values)}    esac
}}

_{name}() {{
    local commands=({commands})
    local tool=${{COMP_WORDS[0]/#\\~/$HOME}}
    local path= place=0 option= i word known command
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${{COMP_WORDS[i]}}
        if [ -n "$option" ]; then
            option=
            continue
        fi
        if [[ "$word" == -* ]]; then
            ! _{name}_valued "$path" | grep -qxF -e "$word" || option=$word
            continue
        fi
        known=
        for command in "${{commands[@]}}"; do
            [ "$command" != "${{path:+$path }}$word" ] || known=1
        done
        if [ -n "$known" ]; then path=${{path:+$path }}$word; else ((++place)); fi
    done
    word=${{COMP_WORDS[COMP_CWORD]}}
    mapfile -t COMPREPLY < <(compgen -W "$(
        [ -n "$option" ] || _{name}_words "$path"
        _{name}_values "$path:${{option:-$place}}" "$word" "$tool"
    )" -- "$word")
}}

complete -F _{name} {name}
"""


def paths(command, path=()):
    for inner in command["commands"]:
        yield path + (inner["name"],)
        yield from paths(inner, path + (inner["name"],))


def parts(text):
    """The help of a program: what it is, its options for roff, and the paragraphs behind them."""
    about, _, rest = text.partition("\nUsage:")
    lines, names, behind = [], [], []
    for line in rest.split("\n"):
        option = re.match(r"  (-[-\w,]+)(?: (\S+?)(?:=(\S+))?(?: \.\.\.)?)?(?:\s{2,}(.*))?$", line)
        if option:
            names.append(option[1])
            value = " \\fIVALUE\\fR" if option[2] else ""
            lines += [".TP", f"\\fB{roff(option[1].replace(',', ', '))}\\fR{value}"]
            default = f" (default {option[3]})" if option[3] else ""
            lines += [roff(option[4] + default)] if option[4] else []
        elif names and line.startswith(" " * 8):
            lines.append(roff(line.strip()))
        elif names and line.strip():
            behind.append(line.strip())
    return " ".join(about.split()), lines, behind


def television(program, version):
    """The manual of the television, from its help."""
    # Its default directory is that of the user who builds.
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("HOME", "XDG_STATE_HOME")}
    text = subprocess.run([program, "--help"], check=True, stdout=subprocess.PIPE,
                          env=environment).stdout.decode()
    about, lines, _ = parts(text)
    name = "qeltvd"
    return "\n".join([
        f'.TH {name.upper()} 8 "" "qeltvapi {version}"',
        ".SH NAME",
        f"{name} \\- reference television",
        ".SH SYNOPSIS",
        f".B {name}",
        "[\\fIOPTION\\fR] ...",
        ".SH DESCRIPTION",
        roff(about),
        ".SH OPTIONS",
        *lines,
        ".SH EXIT STATUS",
        "1 for a failure, 2 for wrong usage; the reason is on stderr",
        *ENVIRONMENT,
        ".TP",
        ".B XDG_STATE_HOME",
        "Directory of the state directory qeltvd, unless \\-\\-state names another one; otherwise",
        "~/.local/state",
        ".TP",
        ".B QELTVD_SCAN_TABLES",
        "Directory of the scan tables; otherwise /usr/share/dvb",
        ".SH SEE ALSO",
        ".BR qeltvctl (1)",
    ]) + "\n"


def conformance(program, version):
    """The manual of the program that examines services, from its help and its list of checks."""
    def printed(option):
        return subprocess.run([program, option], check=True,
                              stdout=subprocess.PIPE).stdout.decode()
    about, lines, behind = parts(printed("--help"))
    *description, status = behind
    name = "qeltv-conformance"
    checks = []
    for line in printed("--list").splitlines():
        check, text = line.split(None, 1)
        checks += [".TP", f".B {roff(check)}", roff(text)]
    return "\n".join([
        f'.TH {name.upper()} 1 "" "qeltvapi {version}"',
        ".SH NAME",
        f"{roff(name)} \\- examine a service of the television",
        ".SH SYNOPSIS",
        f".B {roff(name)}",
        "[\\fIOPTION\\fR] ...",
        ".SH DESCRIPTION",
        roff(about),
        *(line for one in description for line in (".PP", roff(one))),
        ".SH OPTIONS",
        *lines,
        ".SH CHECKS",
        *checks,
        ".SH EXIT STATUS",
        roff(status.partition(": ")[2]),
        *ENVIRONMENT,
        ".TP",
        ".B QELTV_CALL_TIMEOUT_MS",
        "How long a call may take, in milliseconds; otherwise 10000",
        ".SH SEE ALSO",
        ".BR qeltvd (8),",
        ".BR qeltvctl (1)",
    ]) + "\n"


def main():
    name, program, directory, version = sys.argv[1:]
    directory = pathlib.Path(directory)
    if name == "qeltvd":
        (directory / "qeltvd.8").write_text(television(program, version))
        return
    if name == "qeltv-conformance":
        (directory / f"{name}.1").write_text(conformance(program, version))
        return
    root = json.loads(subprocess.run([program, "--print-commands"], check=True,
                                     stdout=subprocess.PIPE).stdout)
    (directory / "qeltvctl.1").write_text(manual(root, version))
    (directory / "qeltvctl.bash").write_text(completion(root))


main()
