// Includes one header from a library of its choosing: the layering tests build
// it against a lower layer, where the header of a higher one must not be found.
#include PROBE_HEADER

int probeLayering();
