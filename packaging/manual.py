#!/usr/bin/env python3
"""Makes the manual: pages for man(1) and the same as HTML, and the guide as HTML. Options, settings, formats and variables
come from twk itself, prose from docs/.

    manual.py PATH-OF-TWK DOCS FOLDER

Writes FOLDER/man1, FOLDER/man5 and FOLDER/html. Needs lowdown.
"""

import json
import os
import re
import subprocess
import sys
import time

# What is said about a command's group, under the headings of docs/command-line.md.
SECTIONS = {"user": ["user", "Users who leave, move or change their names", "What is protected"],
            "profile": ["Users who leave, move or change their names"], "acl": ["acl, owner"], "owner": ["acl, owner"],
            "doctor": ["A real domain"]}
STYLE = ("<style>body{max-width:52em;margin:2em auto;padding:0 1em;font-family:sans-serif;line-height:1.45}"
         "pre{background:#f2f2f2;padding:.7em;overflow:auto}table{border-collapse:collapse}"
         "td,th{border:1px solid #bbb;padding:.25em .6em;text-align:left;vertical-align:top}"
         "@media(prefers-color-scheme:dark){body{background:#1c1c1c;color:#ddd}pre{background:#2a2a2a}a{color:#8ab4f8}}"
         "</style>\n")


def plain(text):
    """A text of the parser, in which nothing is markup."""
    return re.sub(r"([\\`*_{}\[\]<>#|~^])", r"\\\1", text)


def sections_of(path):
    """The texts under the headings of the second level, and what stands in front of them under ""."""
    found = {"": []}
    heading = ""
    with open(path, encoding="utf-8") as lines:
        for line in lines.read().splitlines():
            if line.startswith("## "):
                heading = line[3:].strip()
                found[heading] = []
            elif not line.startswith("# "):
                found[heading].append(line)
    return {heading: "\n".join(lines).strip() for heading, lines in found.items()}


class Command:
    def __init__(self, row):
        self.words = row["command"]
        self.help = row["help"]
        self.inner = row["commands"].split()
        self.options = []
        self.example = ""

    def value_of(self, option):
        kind, _, rest = option["value"].partition(":")
        words = re.fullmatch(r"\{(.*)\}", rest)
        return "|".join(words.group(1).split(",")) if words else kind

    def synopsis(self):
        parts = [f"**twk {self.words}**".replace(" **", "**")]
        named = [option for option in self.options if option["option"].startswith("-") and option["option"] != "--help"]
        for option in named:
            value = self.value_of(option)
            text = f"**{plain(option['option'])}**" + (f" *{plain(value)}*" if value else "")
            parts.append(text if option["required"] else f"\\[{text}\\]")
        for option in self.options:
            if not option["option"].startswith("-"):
                text = f"*{plain(option['option'])}*"
                parts.append(text if option["required"] else f"\\[{text}\\]")
        return " ".join(parts)

    def listed_options(self, heading):
        lines = []
        for option in self.options:
            if option["option"] == "--help" or option["heading"] != heading:
                continue
            value = "" if heading == "Arguments" else self.value_of(option)
            lines.append(f"**{plain(option['option'])}**" + (f" *{plain(value)}*" if value else ""))
            lines.append(f": {plain(option['help'])}\n")
        return "\n".join(lines)

    def all_options(self):
        headings = []
        for option in self.options:
            if option["heading"] not in headings:
                headings.append(option["heading"])
        parts = [(heading, self.listed_options(heading)) for heading in headings]
        return "\n\n".join(text if heading in ("Options", "Arguments") else f"*{plain(heading)}:*\n\n{text}"
                           for heading, text in parts if text)


def rows_of(twk, *words):
    printed = subprocess.run([twk, *words], capture_output=True, text=True, check=True).stdout
    return [json.loads(line) for line in printed.splitlines()]


def commands_of(rows):
    commands = {}
    for row in rows:
        if "option" in row:
            commands[row["command"]].options.append(row)
        elif "command" in row:
            commands[row["command"]] = Command(row)
        elif "words" in row:
            commands[row["words"]].example = row["example"]
    return commands


def group_page(commands, group, prose):
    top = commands[group]
    members = [commands[f"{group} {name}"] for name in top.inner] or [top]
    text = [f"# NAME\n\ntwk-{group} - {plain(top.help)}\n", "# SYNOPSIS\n"]
    text += [command.synopsis() + "\n" for command in members]
    text.append("# DESCRIPTION\n")
    for heading in SECTIONS.get(group, [group]):
        if heading in prose:
            text.append(prose[heading].replace("\n### ", "\n## ") + "\n")
    text.append("# OPTIONS\n\nThe options of *twk*(1) may be given, too.\n")
    for command in members:
        text.append(f"## twk {command.words}\n\n{plain(command.help)}.\n\n{command.all_options()}\n")
        text.append(f"Example:\n\n```\n{command.example}\n```\n")
    text.append("# SEE ALSO\n\n*twk*(1), *tarnwick*(1), *tarnwick-files*(5), *tarnwick-settings*(5), *tarnwick-formats*(5)\n")
    return "\n".join(text)


def main_page(commands, prose):
    top = commands[""]
    text = ["# NAME\n\ntwk - user accounts of Windows domains, on the command line\n",
            "# SYNOPSIS\n\n**twk** \\[*OPTION*...\\] *COMMAND* ...\n", "# DESCRIPTION\n", prose[""].split("```")[-1].strip() + "\n",
            "# COMMANDS\n"]
    text += [f"**{name}**\n: {plain(commands[name].help)}; see *twk-{name}*(1)\n" for name in top.inner]
    text += ["# OPTIONS\n", top.all_options() + "\n"]
    for heading, title in (("A real domain", "A REAL DOMAIN"), ("In scripts", "IN SCRIPTS"),
                           ("What is protected", "WHAT IS PROTECTED")):
        text.append(f"# {title}\n\n{prose[heading]}\n".replace("\n### ", "\n## "))
    text.append("# SEE ALSO\n\n*tarnwick*(1), *tarnwick-files*(5), *tarnwick-settings*(5), *tarnwick-formats*(5)\n")
    return "\n".join(text)


def files_page(docs):
    with open(f"{docs}/file-formats.md", encoding="utf-8") as file:
        text = file.read()
    text = re.sub(r"^# .*\n", "", text).replace("\n## ", "\n# ").replace("\n### ", "\n## ")
    return "# NAME\n\ntarnwick-files - the files of Tarnwick\n\n# DESCRIPTION\n" + text


def settings_page(rows):
    text = ["# NAME\n\ntarnwick-settings - the settings of Tarnwick\n\n# DESCRIPTION\n",
            "`twk settings set KEY NAME VALUE` changes one, `twk settings describe` lists them; *twk-settings*(1).\n"]
    key = None
    for row in rows:
        if key != row["name"].split("\\")[0]:
            key = row["name"].split("\\")[0]
            text.append(f"# {key.upper()}\n")
        default = f" Default: {plain(row['default'])}." if row["default"] else ""
        text.append(f"**{plain(row['name'].split(chr(92))[1])}** *{plain(row['takes'])}*\n: {plain(row['meaning'])}.{default}\n")
    return "\n".join(text)


def formats_page(rows):
    text = ["# NAME\n\ntarnwick-formats - formats of names, and variables\n\n# DESCRIPTION\n",
            "Account names, full names, passwords and many other texts are made from a person's names by a format: text "
            "with tags, in capitals or small letters. `twk format` tries one; *twk-format*(1).\n\n# FORMATS\n",
            "The examples are for John Fred Smith, the serial number 1, and a line of an import with Sales in its second "
            "field, Department.\n"]
    text += [f"**{plain(row['format'])}**\n: {plain(row['meaning'])}. **{plain(row['example'])}** gives *{plain(row['result'])}*.\n"
             for row in rows if "format" in row]
    text.append("# VARIABLES\n\nA variable stands between percent signs, in capitals or small letters. A template has up to "
                "50 of its own, which may be used in descriptions, values of tables and commands. The tags above may be "
                "used there, too.\n")
    text += [f"**{plain(row['variable'])}**\n: {plain(row['meaning'])}; in {plain(row['where'])}.\n" for row in rows if "variable" in row]
    return "\n".join(text)


def write_guide(docs, folder):
    """The pages of the guide, whose links lead to each other and to the manual."""
    for page in sorted(os.listdir(f"{docs}/guide")):
        with open(f"{docs}/guide/{page}", encoding="utf-8") as file:
            text = file.read()
        text = re.sub(r"\]\(([a-z0-9-]+)\.md", r"](guide-\1.html", text)
        text = re.sub(r"\]\(\.\./(command-line|file-formats)\.md[^)]*\)",
                      lambda link: {"command-line": "](twk.1.html)", "file-formats": "](tarnwick-files.5.html)"}[link.group(1)], text)
        title = re.match(r"# (.*)", text).group(1)
        write(f"{folder}/html/guide-{page[:-3]}.html", as_html(text, title))


def as_html(markdown, title):
    html = subprocess.run(["lowdown", "-s", "-Thtml", f"-Mtitle={title}", "--out-no-smarty"], input=markdown,
                          capture_output=True, text=True, check=True).stdout
    return html.replace("</head>", STYLE + "</head>", 1)


def converted(markdown, kind, title, section):
    # Links lead into the sources, which a page does not have beside it.
    markdown = re.sub(r"\[([^\]]+)\]\((?!http)[^)]*\)", r"\1", markdown)
    day = time.strftime("%Y-%m-%d", time.gmtime(int(os.environ.get("SOURCE_DATE_EPOCH", time.time()))))
    return subprocess.run(["lowdown", "-s", f"-T{kind}", f"-Mtitle={title}", f"-Msection={section}", f"-Mdate={day}",
                           "-Msource=Tarnwick", "--out-no-smarty"],
                          input=markdown, capture_output=True, text=True, check=True).stdout


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def write_page(folder, name, section, markdown):
    man = converted(markdown, "man", name, section)
    man = re.sub(r"^\.(SH|SS)\n(.*)\n(\.(PP|LP)\n)?", r'.\1 "\2"' + "\n", man, flags=re.MULTILINE).replace(r"\fC", r"\fB")
    # A long word in a narrow cell may be broken where its parts begin.
    man = re.sub(r"(?<=\\fB)[^\\]{16,}", lambda word: re.sub(r"([/,])", r"\1\\:", word.group()), man)
    # The first line asks for the preprocessor of tables, whose narrow cells cannot be adjusted.
    heading = man.split("\n", 2)
    write(f"{folder}/man{section}/{name}.{section}", "'\\\" t\n" + heading[1] + "\n.ad l\n.nh\n" + heading[2])
    html = converted(markdown, "html", name, section).replace("</head>", STYLE + "</head>", 1)
    write(f"{folder}/html/{name}.{section}.html", html)


def main():
    twk, docs, folder = sys.argv[1:]
    rows = rows_of(twk, "__manual")
    commands = commands_of(rows)
    prose = sections_of(f"{docs}/command-line.md")
    write_page(folder, "twk", 1, main_page(commands, prose))
    write_page(folder, "tarnwick-files", 5, files_page(docs))
    write_page(folder, "tarnwick-settings", 5, settings_page(rows_of(twk, "--json", "settings", "describe")))
    write_page(folder, "tarnwick-formats", 5, formats_page(rows))
    write_guide(docs, folder)
    for group in commands[""].inner:
        write_page(folder, f"twk-{group}", 1, group_page(commands, group, prose))
        for name in commands[group].inner:
            write(f"{folder}/man1/twk-{group}-{name}.1", f".so man1/twk-{group}.1\n")
    pages = ["twk.1", *(f"twk-{group}.1" for group in commands[""].inner), "tarnwick-files.5", "tarnwick-settings.5",
             "tarnwick-formats.5"]
    index = "# Tarnwick\n\n[The guide](guide-README.html)\n\n" + "\n".join(f"- [{page}]({page}.html)" for page in pages)
    write(f"{folder}/html/index.html", as_html(index, "Tarnwick"))


main()
