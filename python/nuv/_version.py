"""The version of the package, and of the libraries that it calls."""

VERSION = "0.1.0"
