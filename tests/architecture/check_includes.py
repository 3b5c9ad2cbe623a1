"""A folder of src/ includes only itself and the folders before it in the arrow line of docs/architecture.md."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)
# Folders without a screen: nothing in them may reach for a widget.
WIDGETS = re.compile(r'^(QtWidgets/|QWidget|QMainWindow|QDialog|QMessageBox|QApplication|QLabel|QTreeView|QListView|QWebEngine)')
SCREEN_FOLDERS = {"work", "views", "app"}
# The sample maker must not share a mistake with the readers that it serves to check.
SAMPLE_MAY_USE = {"resources", "base", "sample"}


def arrow_line():
    for line in (ROOT / "docs" / "architecture.md").read_text(encoding="utf-8").splitlines():
        if line.count("→") > 3:
            return re.findall(r"[a-z]+", line)
    raise SystemExit("docs/architecture.md has no arrow line")


def sources():
    for path in sorted((ROOT / "src").rglob("*")):
        if path.suffix in {".h", ".cpp"}:
            yield path, path.relative_to(ROOT / "src").parts[0], path.read_text(encoding="utf-8")


def may_use(folder, other, order):
    if folder == "sample":
        return other in SAMPLE_MAY_USE
    if folder == "cli" and other in {"views", "app"}:
        return False
    return order.index(other) <= order.index(folder)


def main():
    order = arrow_line()
    complaints = []
    seen = 0
    for path, folder, text in sources():
        if folder not in order:
            complaints.append(f"{path}: the folder is missing in the arrow line")
            continue
        for name in INCLUDE.findall(text):
            seen += 1
            other = name.split("/")[0]
            if "/" in name and other in order and not may_use(folder, other, order):
                complaints.append(f"{path}: {folder} must not include {name}")
            if folder not in SCREEN_FOLDERS and WIDGETS.match(name):
                complaints.append(f"{path}: {folder} has no widgets, yet includes {name}")
    if seen == 0:
        complaints.append("no include was found at all")
    print("\n".join(complaints) or f"{seen} includes keep the order")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
