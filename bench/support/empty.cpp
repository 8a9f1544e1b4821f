// A library of nothing: what loading it takes is the cost of the libraries that it is linked with.
