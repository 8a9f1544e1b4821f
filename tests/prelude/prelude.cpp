// Compiles nothing of its own: the headers that nearly every test includes are compiled with it, once, as
// C++.
