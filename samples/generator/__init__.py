"""The parts of make_sample_library.py."""
