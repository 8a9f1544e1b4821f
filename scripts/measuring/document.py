"""What is measured, in its places of a page. All that stands around them is people's."""

from __future__ import annotations

from common.problems import Problem


def begin_of(name: str) -> str:
    return f"<!-- {name} -->"


def end_of(name: str) -> str:
    return f"<!-- end of {name} -->"


def filled(page: str, contents: dict[str, str]) -> str:
    for name, content in contents.items():
        page = filled_place(page, name, content)
    return page


def filled_place(page: str, name: str, content: str) -> str:
    for marker in (begin_of(name), end_of(name)):
        count = page.count(marker)
        if count != 1:
            raise Problem(f"{marker} is there {count} times, not once" if count > 0 else f"{marker} is missing")
    before, _, rest = page.partition(begin_of(name))
    if end_of(name) not in rest:
        raise Problem(f"{end_of(name)} stands before {begin_of(name)}")
    after = rest.partition(end_of(name))[2]
    return f"{before}{begin_of(name)}\n\n{content}\n\n{end_of(name)}{after}"
