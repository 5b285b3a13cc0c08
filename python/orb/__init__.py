"""The framework that elements are made in."""
