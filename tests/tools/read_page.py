"""Reads exported pages with a parser of its own and prints what is in them as JSON.

read_page.py PAGE...: a list with one object for each, {"tags": {...}, "attributes": [...], "links": [...], "pictures": [...], "missing": [...],
"bubbles": [[class, text], ...], "dates": [...], "labels": [...], "system": [...]}. Addresses are decoded; "missing" are
those that do not lead to a file beside the page ("#" leads nowhere by intention).
"""

import html.parser
import json
import pathlib
import sys
import urllib.parse

VOID = {"meta", "link", "img", "br"}


class Page(html.parser.HTMLParser):
    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.tags = {}
        self.attributes = set()
        self.links = []
        self.pictures = []
        self.bubbles = []
        self.texts = {"dt": [], "ct_left": [], "sysif": []}
        self.open = []

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        self.tags[tag] = self.tags.get(tag, 0) + 1
        self.attributes |= set(attrs)
        if "href" in attrs:
            self.links.append(attrs["href"])
        if "src" in attrs:
            self.pictures.append(attrs["src"])
        css = attrs.get("class", "")
        if css in ("bb1", "bb2"):
            self.bubbles.append([css, ""])
        elif css in self.texts:
            self.texts[css].append("")
        if tag == "br":
            self.handle_data("\n")
        if tag not in VOID:
            self.open.append((tag, css))

    def handle_endtag(self, tag):
        if tag not in VOID:
            opened, _ = self.open.pop() if self.open else (None, None)
            assert opened == tag, f"</{tag}> ends <{opened}>"

    def handle_data(self, data):
        for _, css in reversed(self.open):
            if css in ("bb1", "bb2"):
                self.bubbles[-1][1] += data
                return
            if css in self.texts:
                self.texts[css][-1] += data
                return


def leads_to_a_file(page, address):
    parts = urllib.parse.urlsplit(address)
    if parts.scheme or parts.netloc or parts.query or parts.fragment or address.startswith("/"):
        return False
    return (page.parent / urllib.parse.unquote(parts.path)).is_file()


def read(path):
    page = Page()
    page.feed(path.read_text(encoding="utf-8"))
    page.close()
    assert not page.open, f"left open: {page.open}"
    addresses = [a for a in page.links + page.pictures if a != "#"]
    return {
        "tags": page.tags,
        "attributes": sorted(page.attributes),
        "links": [urllib.parse.unquote(a) for a in page.links],
        "pictures": [urllib.parse.unquote(a) for a in page.pictures],
        "missing": [a for a in addresses if not leads_to_a_file(path, a)],
        "bubbles": page.bubbles,
        "dates": page.texts["dt"],
        "labels": page.texts["ct_left"],
        "system": page.texts["sysif"],
    }


if __name__ == "__main__":
    print(json.dumps([read(pathlib.Path(name)) for name in sys.argv[1:]]))
