// refused by: compiler
// message: 'sys/epoll.h' file not found
#include <sys/epoll.h>
