#!/usr/bin/env python3
"""Builds the help and checks it: each panel's key leads to a page of its own, and no link or picture leads nowhere."""

import re

import house
import make_help

PANELS = "src/app/frm_main.cpp"
# Pages that are not a panel's, but are named from outside the help.
OTHERS = ("pirep-editor", "world-locations", "airport-lookup", "airlines")


def panel_anchors(root):
    """Where the window opens the help: the last text of each row of its panels."""
    return re.findall(r'Panel_Row\{[^{}]*"([^"]*)"\s*\}', house.read_text(root / PANELS))


def check(root):
    made = make_help.Help(root)
    text = made.write()
    panels = panel_anchors(root)
    faults = [] if panels else [f"{PANELS}: no rows of panels are found, from which the help is opened"]
    faults += [f"{make_help.PAGES}: no page has the anchor {anchor}" for anchor in (*panels, *OTHERS) if f'id="{anchor}"' not in text]
    return made.faults + faults


def tree(text, without=None, more="", panels='Panel_Row{"ACARS", 1, "acars"},\nPanel_Row{"Settings", 5,\n    "settings"},\n'):
    """A help of short pages, but for the page of the first panel, which has this text."""
    pages = {anchor: f"docs/help/{anchor}.md" for anchor in ("acars", "settings", *OTHERS) if anchor != without}
    files = {name: f"# About {anchor}\n\n## Parts of it\n" for anchor, name in pages.items()}
    files[pages["acars"]] += f"\nfirst\n{text}\n"
    return files | {make_help.STYLE: "\n", "docs/a.png": "PNG", "docs/airlines.md": "# Of no page\n", PANELS: panels,
                    make_help.PAGES: "".join(f"{anchor} {name}\n" for anchor, name in pages.items()) + more}


CASES = [
    ("all in place", tree("[a](settings.md) [b](#parts-of-it) [c](../airlines.md#x) [d](https://example.org) ![e](../a.png)"), 0),
    ("a panel without a page", tree("", without="settings"), 1),
    ("panels that are not found", tree("", panels="\n"), 1),
    ("a page that is not there", tree("", more="more docs/help/more.md\n"), 1),
    ("a link to no file", tree("[a](nowhere.md)"), 1),
    ("a link to no heading", tree("[a](settings.md#nothing) and [b](#neither)"), 2),
    ("no picture, or no words for it", tree("![words](../b.png) ![](../a.png)"), 2),
    ("an address without encryption", tree("[a](http://example.org)"), 1),
    ("HTML", tree("<b>bold</b>"), 2),
    ("a heading twice", tree("## Parts of it"), 1),
    ("an anchor twice", tree("", more="acars docs/airlines.md\n"), 1),
    ("too much", tree("![a](../a.png)") | {"docs/a.png": "p" * make_help.MOST_BYTES}, 1),
]

if __name__ == "__main__":
    house.main("help", check, CASES)
