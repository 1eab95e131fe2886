"""The pages of the interface: python3 -m sphinx -W -b html python/docs FOLDER"""

import nuv

project = "nuv"
version = release = nuv.__version__
extensions = ["sphinx.ext.autodoc", "numpydoc"]
html_theme = "basic"
html_copy_source = False
autodoc_member_order = "bysource"
autodoc_typehints = "none"
numpydoc_show_class_members = False
nitpicky = False
