#!/usr/bin/env python3
"""Writes qeltvctl.1 and qeltvctl.bash from the command tree that qeltvctl prints.

generate_manual.py QELTVCTL DIRECTORY VERSION
"""
import json
import pathlib
import subprocess
import sys

# What the first argument of a command can be: a command that prints it in its first column, after a
# head.
FUNCTIONS = 'list "$word"'
ITEMS = 'config list --all "$word"'
VALUES = {
    "call": FUNCTIONS,
    "describe": FUNCTIONS,
    "list": FUNCTIONS,
    "config get": ITEMS,
    "config list": ITEMS,
    "config set": ITEMS,
}


def roff(text):
    """Text with what roff would take for its own made plain."""
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
        ".SH ENVIRONMENT",
        ".TP",
        ".B QELTV_RUNTIME_DIR",
        "Directory in which processes find each other; otherwise hidl in $XDG_RUNTIME_DIR, or",
        "/tmp/hidl\\-UID",
        ".TP",
        ".B QELTV_TRACE",
        "1, or names of interfaces separated by commas: a line on stderr for each call",
        ".TP",
        ".B QELTV_CALL_TIMEOUT_MS",
        "After so many milliseconds a call fails as one whose reply was lost; without it, never",
    ]
    return "\n".join(lines) + "\n"


def completion(root):
    cases = []

    def add(path, command):
        words = [inner["name"] for inner in command["commands"]]
        values = []
        for option in command["options"]:
            names = option["names"].split(",")
            if not option["positional"]:
                words += [name for name in names if name.startswith("--")]
                if option["takesValue"]:
                    values += names
        lines = [f'words="{" ".join(words)}"']
        if values:
            lines.append(f'values=" {" ".join(values)} "')
        if " ".join(path) in VALUES:
            lines.append(f"source='{VALUES[' '.join(path)]}'")
        body = "\n            ".join(lines)
        cases.append(f'        "{" ".join(path)}")\n            {body}\n            ;;')
        for inner in command["commands"]:
            add(path + [inner["name"]], inner)

    add([], root)
    commands = " ".join('"' + " ".join(path) + '"' for path in sorted(paths(root)))
    return f"""# bash completion of {root["name"]}

# Prints the words that the command takes next.
_{root["name"]}_next() {{
    local path=$1 word=$2 place=$3 words= values= source=
    case "$path" in
{chr(10).join(cases)}
    esac
    case "$4" in
        values) printf '%s' "$values" ;;
        *)
            printf '%s\\n' $words
            [ -z "$source" ] || ((place > 0)) ||
                eval "timeout 2 $5 $source" 2>/dev/null | tail -n +2 | cut -d' ' -f1
            ;;
    esac
}}

_{root["name"]}() {{
    local commands=({commands})
    local path= place=0 i word known command
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${{COMP_WORDS[i]}}
        if [[ "$word" == -* ]]; then
            [[ "$(_{root["name"]}_next "$path" "" 0 values)" != *" $word "* ]] || ((++i))
            continue
        fi
        known=
        for command in "${{commands[@]}}"; do
            [ "$command" != "${{path:+$path }}$word" ] || known=1
        done
        if [ -n "$known" ]; then path=${{path:+$path }}$word; else ((++place)); fi
    done
    # The value of an option is the caller's to know.
    ((i == COMP_CWORD)) || return 0
    word=${{COMP_WORDS[COMP_CWORD]}}
    mapfile -t COMPREPLY < <(compgen -W "$(_{root["name"]}_next "$path" "$word" "$place" words \\
        "${{COMP_WORDS[0]}}")" -- "$word")
}}

complete -F _{root["name"]} {root["name"]}
"""


def paths(command, path=()):
    for inner in command["commands"]:
        yield path + (inner["name"],)
        yield from paths(inner, path + (inner["name"],))


def main():
    tool, directory, version = sys.argv[1:]
    root = json.loads(subprocess.run([tool, "--print-commands"], check=True,
                                     stdout=subprocess.PIPE).stdout)
    directory = pathlib.Path(directory)
    (directory / "qeltvctl.1").write_text(manual(root, version))
    (directory / "qeltvctl.bash").write_text(completion(root))


main()
