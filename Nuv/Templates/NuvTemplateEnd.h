/// @file
/// Closes a template: its parameters mean nothing from here on.
#undef NUV_SELF
#undef NUV_ELEMENT
#undef NUV_FIRST
#undef NUV_SECOND
#undef NUV_KEY
#undef NUV_VALUE
#undef NUV_OP
#undef NUV_OF_ELEMENT
#undef NUV_OF_KEY_AND_VALUE
