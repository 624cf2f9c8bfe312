// Nothing: the headers that are precompiled need a source to belong to.
