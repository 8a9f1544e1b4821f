// refused by: compiler
// message: 'bits/stdc++.h' file not found
#include <bits/stdc++.h>
