# SPDX-License-Identifier: MIT
"""The manual: pages of Markdown, and a reference that is read out of sigpak.h."""

import re
import sys
from pathlib import Path

tree = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(tree / "docs"))

project = "sigpak"
author = "the sigpak developers"
copyright = author
version = release = re.search(r"VERSION (\d+\.\d+\.\d+)", (tree / "CMakeLists.txt").read_text())[1]

extensions = ["myst_parser", "sphinx_header"]
myst_enable_extensions = ["colon_fence", "deflist"]
myst_heading_anchors = 3
exclude_patterns = ["README.md"]  # a part of the page on speed
primary_domain = "c"
highlight_language = "c"
nitpicky = True
nitpick_ignore = [("c:identifier", name) for name in ("int32_t", "uint32_t", "FILE")]

html_theme = "sphinx_rtd_theme"
html_title = f"sigpak {version}"
html_static_path = ["static"]
html_css_files = ["manual.css"]
html_show_copyright = html_show_sphinx = html_copy_source = html_show_sourcelink = False
html_theme_options = {"navigation_depth": 3, "collapse_navigation": True}
toc_object_entries_show_parents = "hide"

# The field of the records has that name.
c_extra_keywords = ["alignas", "alignof", "bool", "noreturn", "static_assert", "thread_local"]
