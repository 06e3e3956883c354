#!/usr/bin/env python3
"""Makes what a package needs besides files of the repository: man pages, completions, changelogs.

Man pages and completions are made from what the programs say themselves (--help), so that they can't differ from them.
The date in all of it is SOURCE_DATE_EPOCH, so that the same sources give the same bytes.
"""

import argparse
import dataclasses
import datetime
import gzip
import os
import pathlib
import re
import subprocess

MANUAL = "Hollin Flow Model (Nivora) Users Manual.pdf"


def moment() -> datetime.datetime:
    seconds = os.environ.get("SOURCE_DATE_EPOCH")
    now = datetime.datetime.now(datetime.timezone.utc)
    return datetime.datetime.fromtimestamp(int(seconds), datetime.timezone.utc) if seconds else now


@dataclasses.dataclass
class Help:
    """What one --help says."""

    intro: str = ""
    usage: str = ""
    tail: str = ""
    # Title of a section, such as "Options", and its entries: head and description.
    sections: dict = dataclasses.field(default_factory=dict)


def read_help(text: str) -> Help:
    told = Help()
    section = None
    in_tail = False
    for line in text.splitlines():
        entry = re.match(r"  (\S.*?)(?:  +(\S.*))?$", line)
        wrapped = re.match(r" {20,}(\S.*)$", line)
        if line.startswith("Usage: "):
            told.usage = line[len("Usage: "):]
        elif not told.usage:
            told.intro += line + "\n"
        elif in_tail:
            told.tail += line + "\n"
        elif re.fullmatch(r"[A-Z][A-Za-z ]*:", line) and line not in ("Example:", "Examples:"):
            section = told.sections.setdefault(line[:-1], [])
        elif section is not None and wrapped and section:
            section[-1][1] = (section[-1][1] + " " + wrapped[1]).strip()
        elif section is not None and entry:
            section.append([entry[1], entry[2] or ""])
        elif line.strip():
            told.tail += line + "\n"
            in_tail = True
    if not told.usage or "Options" not in told.sections:
        raise SystemExit("make_texts: no usage or options in:\n" + text)
    return told


def ask(program: pathlib.Path, *words: str) -> Help:
    done = subprocess.run([program, *words, "--help"], capture_output=True, text=True, check=True,
                          env={**os.environ, "LC_ALL": "C.UTF-8"})
    return read_help(done.stdout)


def roff(text: str) -> str:
    escaped = text.replace("\\", "\\e").replace("-", "\\-").replace("³", "\\[S3]").replace("²", "\\[S2]")
    escaped = escaped.replace("'", "\\(aq").replace("…", "...")
    return "\n".join("\\&" + line if line.startswith(".") else line for line in escaped.splitlines())


def sections_as_roff(told: Help, level: str) -> str:
    text = ""
    for title, entries in told.sections.items():
        if title == "Subcommands":
            continue
        text += f'.{level} "{title.upper() if level == "SH" else title}"\n'
        for head, description in entries:
            text += f".TP\n.B {roff(head)}\n{roff(description)}\n"
    return text


def paragraphs(text: str) -> str:
    made = ""
    for part in re.split(r"\n\s*\n", text.strip("\n")):
        lines = part.splitlines()
        if len(lines) > 1 and all(line.startswith("  ") for line in lines[1:]):
            made += f".PP\n{roff(lines[0])}\n.PP\n.nf\n" + "\n".join(roff(line) for line in lines[1:]) + "\n.fi\n"
        else:
            made += f".PP\n{roff(part)}\n"
    return made


def man_page(name: str, summary: str, version: str, told: Help, commands: dict, others: str) -> str:
    day = moment().strftime("%Y-%m-%d")
    text = f'.TH {name.upper()} 1 "{day}" "Nivora {version}" "Nivora"\n'
    text += f".SH NAME\n{roff(name)} \\- {roff(summary)}\n"
    text += f".SH SYNOPSIS\n{roff(told.usage)}\n.SH DESCRIPTION\n{paragraphs(told.intro)}"
    text += sections_as_roff(told, "SH")
    if commands:
        text += ".SH COMMANDS\n"
        for command, help_of_command in commands.items():
            text += f'.SS "{roff(command)}"\n{roff(help_of_command.intro.strip())}\n.PP\n'
            text += f".B {roff(help_of_command.usage)}\n"
            for title, entries in help_of_command.sections.items():
                for head, description in entries:
                    if head.startswith("-h,"):
                        continue
                    text += f".TP\n.B {roff(head)}\n{roff(description)}\n"
    text += ".SH NOTES\n" + paragraphs(told.tail)
    text += f".SH FILES\n.TP\n.I ~/.local/share/nivora\nThe working file of nivora, its lock, its reports, and what it"
    text += "\nkeeps for a crash. A program folder that can be written to holds them itself.\n"
    text += f".SH SEE ALSO\n{others}\nThe users manual, in the menu Help of nivora.\n"
    return text


def option_names(told: Help) -> list:
    names = []
    for head, description in told.sections["Options"]:
        names.append(([name for name in head.split(" ")[0].split(",") if name.startswith("-")],
                      re.search(r"\{([^}]*)\}", head), description))
    return names


def bash_completion(name: str, told: Help, commands: dict) -> str:
    function = "_" + name.replace("-", "_")
    words = lambda help_of: " ".join(n for names, _, _ in option_names(help_of) for n in names)
    text = f"# bash completion of {name}; made from its --help\n{function}() {{\n"
    text += '    local current="${COMP_WORDS[COMP_CWORD]}" before="${COMP_WORDS[COMP_CWORD-1]}"\n'
    text += "    local command= word options=\n"
    text += '    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do\n'
    text += f"        case \"$word\" in {'|'.join(commands) or '--'}) command=$word; break ;; esac\n    done\n"
    text += '    case "$command:$before" in\n'
    for command, help_of in commands.items():
        for names, choice, _ in option_names(help_of):
            if choice:
                values = " ".join(value.split("->")[0] for value in choice[1].split(","))
                text += f"        {'|'.join(command + ':' + n for n in names)})\n"
                text += f"            COMPREPLY=($(compgen -W '{values}' -- \"$current\")); return ;;\n"
    text += "    esac\n    case \"$command\" in\n"
    for command, help_of in commands.items():
        text += f"        {command}) options='{words(help_of)} --refuse --wait' ;;\n"
    first = words(told) + (" " + " ".join(commands) if commands else "")
    text += f"        *) options='{first}' ;;\n    esac\n"
    text += "    if [[ $current == -* || ( -z $command && -n '" + " ".join(commands) + "' ) ]]; then\n"
    text += '        COMPREPLY=($(compgen -W "$options" -- "$current"))\n    else\n'
    text += "        compopt -o filenames 2>/dev/null\n"
    text += "        COMPREPLY=($(compgen -f -- \"$current\"))\n    fi\n}\n"
    return text + f"complete -F {function} {name}\n"


def zsh_words(told: Help) -> str:
    lines = []
    for names, choice, description in option_names(told):
        told_by = re.sub(r"[\[\]:'`\"\\$]", " ", description)[:90].strip()
        values = f":value:({' '.join(v.split('->')[0] for v in choice[1].split(','))})" if choice else ""
        for name in names:
            lines.append(f"        '{name}[{told_by}]{values}' \\\n")
    return "".join(lines)


def zsh_completion(name: str, told: Help, commands: dict) -> str:
    function = "_" + name
    text = f"#compdef {name}\n# made from the --help of {name}\n"
    if not commands:
        return text + "_arguments \\\n" + zsh_words(told) + "        '*:basin file:_files'\n"
    text += "local -a commands\ncommands=(\n"
    for command, description in told.sections["Subcommands"]:
        short = re.sub(r"[:'`\"\\$]", " ", description)[:90].strip()
        text += f"    '{command}:{short}'\n"
    text += ")\nlocal command=${words[(r)(" + "|".join(commands) + ")]}\ncase $command in\n"
    for command, help_of in commands.items():
        text += f"    {command})\n        _arguments \\\n" + zsh_words(help_of) + "        '*:file:_files' ;;\n"
    text += "    *)\n        _describe command commands\n        _arguments \\\n" + zsh_words(told) + "        ;;\nesac\n"
    return text.replace(" \\\n        ;;", "\n        ;;")


def packed(file: pathlib.Path, text: str) -> None:
    with open(file, "wb") as raw, gzip.GzipFile("", "wb", 9, raw, mtime=0) as out:
        out.write(text.encode())


def manual_with_fixed_date(manual: bytes) -> bytes:
    """The date of a PDF is that of its making; the same length keeps the file's table of places right."""
    fixed = b"CreationDate (D:" + moment().strftime("%Y%m%d%H%M%S").encode()
    return re.sub(rb"CreationDate \(D:\d{14}", fixed, manual)


def main() -> None:
    reader = argparse.ArgumentParser()
    for option in ("--programs", "--version", "--changelog", "--folder"):
        reader.add_argument(option, required=True)
    given = reader.parse_args()
    programs, folder = pathlib.Path(given.programs), pathlib.Path(given.folder)
    for part in ("bash", "zsh"):
        (folder / part).mkdir(parents=True, exist_ok=True)

    desktop = ask(programs / "nivora")
    batch = ask(programs / "nivora-batch")
    commands = {name: ask(programs / "nivora-batch", name) for name, _ in batch.sections["Subcommands"]}
    pages = {
        "nivora": man_page("nivora", "snowmelt runoff of mountain basins", given.version, desktop, {},
                           ".BR nivora\\-batch (1)"),
        "nivora-batch": man_page("nivora-batch", "snowmelt runoff of mountain basins, without windows", given.version,
                                 batch, commands, ".BR nivora (1)"),
    }
    for name, page in pages.items():
        packed(folder / f"{name}.1.gz", page)
    for name, told, known in (("nivora", desktop, {}), ("nivora-batch", batch, commands)):
        (folder / "bash" / name).write_text(bash_completion(name, told, known))
        (folder / "zsh" / f"_{name}").write_text(zsh_completion(name, told, known))

    stamp = moment().strftime("%a, %d %b %Y %H:%M:%S +0000")
    packed(folder / "changelog.gz",
           f"nivora ({given.version}) stable; urgency=medium\n\n  * Version {given.version}; NEWS.md.gz says what is "
           f"new.\n\n -- The Nivora developers <nivora@example.org>  {stamp}\n")
    packed(folder / "NEWS.md.gz", pathlib.Path(given.changelog).read_text())
    (folder / MANUAL).write_bytes(manual_with_fixed_date((programs / MANUAL).read_bytes()))


if __name__ == "__main__":
    main()
