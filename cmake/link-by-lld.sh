#!/bin/sh
# The compiler calls this with the linker that it would use and that linker's arguments.
shift
exec ld.lld "$@"
