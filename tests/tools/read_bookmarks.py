"""Reads a bookmark page the way browsers import it, and strictly: every element has its place, nothing is guessed.

Prints the tree as JSON: a folder is [title, [children]], a bookmark is [title, address].
"""

import html.parser
import json
import sys

HEAD = ('<META HTTP-EQUIV="Content-Type" CONTENT="text/html; charset=UTF-8">', "<TITLE>Bookmarks</TITLE>",
        '<meta http-equiv="Content-Security-Policy" content="default-src \'none\'; style-src \'unsafe-inline\'; '
        'img-src data:; base-uri \'none\'; form-action \'none\'">', "<DL>")


class Page(html.parser.HTMLParser):
    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.top = []
        self.open = []      # names of the elements that are open
        self.folders = []   # children of the folders that are open, outermost first
        self.text = None    # of the title that is being read
        self.address = None

    def expect(self, condition, what):
        if not condition:
            line, column = self.getpos()
            raise SystemExit(f"line {line}, column {column}: {what}, inside {'/'.join(self.open) or 'nothing'}")

    def handle_starttag(self, tag, attributes):
        place = self.open[-1] if self.open else None
        if tag == "meta":
            self.expect(not self.open, "a meta element")
            return
        allowed = {"title": (None,), "dl": (None, "dt"), "dt": ("dl",), "h3": ("dt",), "a": ("dt",)}
        self.expect(place in allowed.get(tag, ()), f"<{tag}>")
        self.open.append(tag)
        if tag == "dl":
            self.expect(bool(self.folders) == (place == "dt"), "a list that is no folder's")
            if not self.folders:
                self.folders.append(self.top)
        elif tag in ("h3", "a", "title"):
            self.text = ""
            self.address = dict(attributes).get("href")
            self.expect((tag == "a") == (self.address is not None), f"<{tag}> with the address {self.address}")

    def handle_endtag(self, tag):
        self.expect(self.open and self.open[-1] == tag, f"</{tag}>")
        self.open.pop()
        if tag == "h3":
            children = []
            self.folders[-1].append([self.text, children])
            self.folders.append(children)
        elif tag == "a":
            self.folders[-1].append([self.text, self.address])
        elif tag == "dl":
            self.folders.pop()
        if tag in ("h3", "a", "title"):
            self.text = None

    def handle_data(self, data):
        if self.text is not None:
            self.text += data
        else:
            self.expect(not data.strip(), f"text {data!r}")


with open(sys.argv[1], encoding="utf-8", newline="") as source:
    text = source.read()
if text.split("\n")[:len(HEAD)] != list(HEAD):
    raise SystemExit("the head is another one")
page = Page()
page.feed(text)
page.close()
page.expect(not page.open, "the end")
# Browsers read these pages line by line: an element stands alone on its line.
for line in text.split("\n"):
    if "<A " in line and not (line.startswith("<DT><A HREF=") and line.endswith("</A></DT>")):
        raise SystemExit(f"a bookmark is not alone on its line: {line}")
json.dump(page.top, sys.stdout)
