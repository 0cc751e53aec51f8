#!/usr/bin/env python3
"""The comments of a header as Doxygen reads them: those that stand on lines of their own.

The comment at the head of a file is its own and, as it speaks of the type that the file is named
after, that type's. Text is text: nothing in it is a command or markup.
"""
import re
import sys

SPECIAL = r"[\\@<>#&%*_|\[\]$]|::"
COMMENT = re.compile(r"^(\s*)//(?: (.*)|$)")


def literal(text):
    """`text` without anything that Doxygen takes for markup, but for code in backquotes."""
    parts = text.split("`")
    if len(parts) % 2 == 0:
        return re.sub(SPECIAL + "|`", r"\\\g<0>", text)
    parts[::2] = [re.sub(SPECIAL, r"\\\g<0>", part) for part in parts[::2]]
    return "`".join(parts)


def block(lines, indent=""):
    """Comment lines as a block that keeps its paragraphs and the lines that are set off."""
    out = []
    is_set_off, previous = False, ""
    for line in lines:
        is_set_off = bool(re.match(r"\s{2,}\S", line)) and (not previous or is_set_off)
        previous = line
        text = literal(line.strip())
        # "Errors: ..." begins a line of its own.
        text = re.sub(r"^([A-Z][a-z]+:)\s+", r"<br>**\1** ", text)
        out.append("%s/// %s%s" % (indent, "<br>" if is_set_off else "", text))
    return out


def main(path):
    with open(path, encoding="utf-8") as file:
        lines = file.read().split("\n")
    head = []
    while lines and COMMENT.match(lines[0]):
        head.append(COMMENT.match(lines.pop(0)).group(2) or "")
    name = path.replace("\\", "/").rsplit("/", 1)[-1]
    out = ["/// \\file %s" % name] + block(head) + [""]
    is_type = any(re.match(r"(class|struct) (\w+ )*%s\b[^;]*$" % name[:-2], line) for line in lines)
    if is_type:
        out += ["/// \\class NAMESPACE%s" % name[:-2]] + block(head) + [""]
    for line in lines:
        comment = COMMENT.match(line)
        if comment:
            out += block([comment.group(2) or ""], comment.group(1))
        else:
            out.append(re.sub(r"\s*// .*$", "", line))
    space = next((m.group(1) for m in (re.match(r"namespace ([\w:]+) {", x) for x in lines) if m), "")
    text = "\n".join(out).replace("NAMESPACE", space + "::" if space else "")
    sys.stdout.write(text)


main(sys.argv[1])
