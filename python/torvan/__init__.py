"""The data model of a lattice-based dataflow analysis."""
