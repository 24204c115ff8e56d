# Native (Linux) build of the portable computing core: its tests and benchmarks only.
