"""An own reading of the language in which account names are written. Percent signs of data are marked, so that no later step
sees a tag in them."""

import re

MARK = "\x00"


def inert(text):
    return text.replace("%", MARK)


def upper(text):
    """A letter whose other case has another length stays."""
    return "".join(c.upper() if len(c.upper()) == 1 else c for c in text)


def put_names(text, names):
    """Puts each name, given with its tag, in place of the tag, with the digits and "#" around it."""
    text = f" {text} "
    for tag, name in names:
        name = inert(name)
        while match := re.search(re.escape(tag), text, re.IGNORECASE):
            at, end = match.span()
            window = text[at - 3:at] if at >= 3 else ""
            case = next((letter.upper() for letter in re.findall("#([UuLl])", window)), "")
            before = text[at - 1] if at and text[at - 1] in "123456789" else ""
            after = text[end] if end < len(text) and text[end] in "123456789" else ""
            if case:  # the letter of "#U" goes
                cut = at - 2 if before else at - 1
                text = text[:cut] + text[cut + 1:]
                at, end = at - 1, end - 1
            begin = at
            if before:
                begin = at - 1 if not case else at - 2
                value = name[:int(before)]
            elif after:
                begin = at if not case else at - 1
                value, end = name[-int(after):], end + 1
            else:
                value = name
            value = upper(value) if case == "U" else value.lower() if case == "L" else value
            text = text[:begin] + value + text[end:]
    return text.replace("#", "")
