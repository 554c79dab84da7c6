#!/usr/bin/env python3
"""Joins the pages of docs/ that docs/help/pages.txt names into one local page, the program's help: make_help.py OUTPUT [DEPFILE]

The page loads nothing from elsewhere: pictures are part of it, and links lead within it or to addresses of the web. A link to
a file of the project that is no page of the help becomes plain text. With DEPFILE, a file for make and ninja says what the
page was made from. Needs the package cmark-gfm.
"""

import base64
import html
import html.parser
import posixpath
import re
import subprocess
import sys
from pathlib import Path

import house

PAGES = "docs/help/pages.txt"
STYLE = "scripts/help.css"
MOST_BYTES = 1_500_000
PICTURE_KINDS = {".png": "image/png", ".svg": "image/svg+xml", ".jpg": "image/jpeg"}
VOID = {"img", "br", "hr", "input"}
# Markdown has no tables without captions.
EMPTY_HEAD = re.compile(r"<thead>\s*<tr>\s*(?:<th[^>]*></th>\s*)+</tr>\s*</thead>\s*")


def heading_id(text):
    """The anchor that readers of Markdown make of a heading, so that a link works in the project's pages too."""
    return re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")


class Page(html.parser.HTMLParser):
    """One page: what it says as pieces of HTML, in which links and pictures wait to be settled, and its anchors."""

    def __init__(self, root, name, anchor):
        super().__init__(convert_charrefs=False)
        self.name, self.anchor = name, anchor
        self.title = ""
        self.pieces, self.anchors, self.faults = [], {}, []
        self.source = (root / name).read_text(encoding="utf-8")
        self.block = (1, len(self.source.splitlines()))
        self.heading = None
        made = subprocess.run(["cmark-gfm", "--sourcepos", "--extension", "table"], input=self.source, capture_output=True,
                              text=True, encoding="utf-8", check=False)
        if made.returncode != 0:
            self.faults.append(f"{name}: cmark-gfm failed: {made.stderr.strip()}")
        self.feed(made.stdout)
        self.close()
        if not self.title:
            self.faults.append(f"{name}:1: the page has no title")

    def line_of(self, text):
        """Where in the source the text stands, looked for in the block that is being read."""
        first, last = self.block
        for number, line in enumerate(self.source.splitlines()[first - 1:last], first):
            if text in line:
                return number
        return first

    def fault(self, text, what):
        self.faults.append(f"{self.name}:{self.line_of(text)}: {what}")

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        place = attributes.pop("data-sourcepos", None)
        if place:
            self.block = tuple(int(end.split(":")[0]) for end in place.split("-"))
        if re.fullmatch("h[1-6]", tag):
            self.heading = [int(tag[1]), len(self.pieces), ""]
            self.pieces.append(None)
            return
        if tag == "a":
            self.pieces.append(("a", attributes["href"], self.line_of(attributes["href"])))
            return
        if tag == "img":
            if not attributes.get("alt"):
                self.fault(attributes["src"], "a picture needs words for those who do not see it")
            self.pieces.append(("img", attributes, self.line_of(attributes["src"])))
            return
        if tag == "table":
            self.pieces.append('<div class="wide">')
        written = "".join(f' {key}="{html.escape(value or "")}"' for key, value in attributes.items())
        self.pieces.append(f"<{tag}{written}>")

    def handle_startendtag(self, tag, attributes):
        self.handle_starttag(tag, attributes)

    def handle_endtag(self, tag):
        if self.heading and tag == f"h{self.heading[0]}":
            self.end_heading()
        elif tag == "a":
            self.pieces.append(("/a",))
        elif tag not in VOID:
            self.pieces.append(f"</{tag}>" + ("</div>" if tag == "table" else ""))

    def end_heading(self):
        level, place, text = self.heading
        self.heading = None
        anchor = heading_id(text)
        if level == 1:
            if self.title:
                self.fault(text, "a second title")
            self.title = text
            whole = self.anchor
        else:
            whole = f"{self.anchor}-{anchor}"
        if anchor in self.anchors:
            self.fault(text, f'a second heading "{text}"')
        self.anchors[anchor] = whole
        self.pieces[place] = f'<h{level + 1} id="{whole}">'
        self.pieces.append(f"</h{level + 1}>")

    def handle_data(self, data):
        if self.heading:
            self.heading[2] += data
        self.pieces.append(data)

    def handle_entityref(self, name):
        self.handle_text(f"&{name};")

    def handle_charref(self, name):
        self.handle_text(f"&#{name};")

    def handle_text(self, written):
        if self.heading:
            self.heading[2] += html.unescape(written)
        self.pieces.append(written)

    def handle_comment(self, data):
        self.fault("<", f"HTML in a page:{data}")


class Help:
    """The pages, and the one page made of them."""

    def __init__(self, root):
        self.root, self.faults, self.read_files = root, [], [PAGES, STYLE]
        self.pages = {}
        for number, line in enumerate((root / PAGES).read_text(encoding="utf-8").splitlines(), 1):
            if not line.strip():
                continue
            anchor, _, name = line.partition(" ")
            if not (root / name).is_file():
                self.faults.append(f"{PAGES}:{number}: there is no page {name}")
                continue
            self.read_files.append(name)
            self.pages[name] = Page(root, name, anchor)
        for page in self.pages.values():
            self.faults += page.faults

    def anchors(self):
        """All anchors of the page; the first of each page is the page's own."""
        return {anchor for page in self.pages.values() for anchor in page.anchors.values()}

    def write(self):
        """The whole page. What is wrong stands in `faults` afterwards."""
        sections = [self.section(page) for page in self.pages.values()]
        every = [anchor for page in self.pages.values() for anchor in page.anchors.values()]
        self.faults += [f"{PAGES}: two places have the anchor {anchor}" for anchor in sorted({a for a in every if every.count(a) > 1})]
        contents = "".join(f'<li><a href="#{page.anchor}">{html.escape(page.title)}</a></li>\n' for page in self.pages.values())
        style = (self.root / STYLE).read_text(encoding="utf-8")
        text = ("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>Norvane Help</title>\n"
                "<meta name=\"viewport\" content=\"width=device-width\">\n<meta name=\"color-scheme\" content=\"light dark\">\n"
                f"<style>\n{style}</style>\n</head>\n<body>\n<nav>\n<p class=\"name\">Norvane Help</p>\n<ul>\n{contents}</ul>\n</nav>\n"
                f"<main>\n<h1>Norvane Help</h1>\n{EMPTY_HEAD.sub('', ''.join(sections))}</main>\n</body>\n</html>\n")
        size = len(text.encode("utf-8"))
        if size > MOST_BYTES:
            self.faults.append(f"{PAGES}: the help has {size} bytes, at most {MOST_BYTES} are allowed")
        return text

    def section(self, page):
        written, open_links = [], []
        for piece in page.pieces:
            if isinstance(piece, str):
                written.append(piece)
            elif piece[0] == "a":
                target = self.link(page, piece[1], piece[2])
                open_links.append(target)
                written.append(f'<a href="{html.escape(target)}">' if target else "")
            elif piece[0] == "/a":
                written.append("</a>" if open_links.pop() else "")
            else:
                written.append(self.picture(page, piece[1], piece[2]))
        return f"<section>\n{''.join(written)}</section>\n"

    def link(self, page, target, line):
        """Where the link leads in the one page; empty when it leads to no page of it."""
        if target.startswith("https://"):
            return target
        path, _, anchor = target.partition("#")
        name = posixpath.normpath(posixpath.join(posixpath.dirname(page.name), path)) if path else page.name
        if not (self.root / name).exists():
            page.block = (line, line)
            self.faults.append(f"{page.name}:{line}: there is no {name}")
            return ""
        if name not in self.pages:
            return ""
        other = self.pages[name]
        if anchor and anchor not in other.anchors:
            self.faults.append(f"{page.name}:{line}: {name} has no heading #{anchor}")
        return "#" + (other.anchors.get(anchor, other.anchor) if anchor else other.anchor)

    def picture(self, page, attributes, line):
        name = posixpath.normpath(posixpath.join(posixpath.dirname(page.name), attributes["src"]))
        kind = PICTURE_KINDS.get(posixpath.splitext(name)[1])
        if kind is None or not (self.root / name).is_file():
            self.faults.append(f"{page.name}:{line}: there is no picture {name}")
            return ""
        self.read_files.append(name)
        data = base64.b64encode((self.root / name).read_bytes()).decode("ascii")
        return f'<img src="data:{kind};base64,{data}" alt="{html.escape(attributes.get("alt") or "")}">'


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(f"usage: {sys.argv[0]} OUTPUT [DEPFILE]")
    try:
        made = Help(house.ROOT)
    except FileNotFoundError as missing:
        sys.exit(f"make_help: {missing.filename} is missing; scripts/install_packages installs the packages")
    text = made.write()
    if made.faults:
        sys.exit("\n".join(made.faults))
    output = Path(sys.argv[1])
    output.write_text(text, encoding="utf-8")
    if len(sys.argv) == 3:
        files = " ".join(str(house.ROOT / name).replace(" ", "\\ ") for name in made.read_files)
        Path(sys.argv[2]).write_text(f"{str(output).replace(' ', chr(92) + ' ')}: {files}\n", encoding="utf-8")


if __name__ == "__main__":
    main()
