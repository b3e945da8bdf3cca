// Nothing stands here: the headers of the test framework are precompiled with it.
