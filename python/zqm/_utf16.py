"""Positions as events tell them: in UTF-16 units, of which characters beyond U+FFFF have two."""


def utf16_slice(text: str, position: int, length: int) -> str:
    """The part of the text that an event's position and length mean.

    Where the text has no character beyond U+FFFF that is text[position : position + length].
    """
    if not text or max(text) <= "\uffff":
        return text[position : position + length]
    units = text.encode("utf-16-le", "surrogatepass")
    return units[2 * position : 2 * (position + length)].decode("utf-16-le", "surrogatepass")
