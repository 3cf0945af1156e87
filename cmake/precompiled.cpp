// A library of precompiled headers needs one file to compile with them.
