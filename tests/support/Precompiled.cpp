// Carries the precompiled <gtest/gtest.h> that every test program shares; it defines nothing
// itself.
