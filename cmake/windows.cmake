# The Windows program, its resources and its Windows-side tests.
