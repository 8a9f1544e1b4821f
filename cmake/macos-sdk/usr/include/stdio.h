// Streams.

#pragma once

#include <sys/types.h>

MACOS_C_BEGIN

typedef struct __sFILE FILE;
typedef off_t fpos_t;
extern FILE *__stdinp, *__stdoutp, *__stderrp;
#define stdin __stdinp
#define stdout __stdoutp
#define stderr __stderrp
#define EOF (-1)
#define BUFSIZ 1024
#define FOPEN_MAX 20
#define FILENAME_MAX 1024
#define L_tmpnam 1024
#define TMP_MAX 308915776
#define _IOFBF 0
#define _IOLBF 1
#define _IONBF 2
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2
#define MACOS_PRINTF_FORMAT(a, b) __attribute__((format(printf, a, b)))
int fclose(FILE*);
int fflush(FILE*);
void setbuf(FILE*, char*);
int setvbuf(FILE*, char*, int, size_t);
FILE* fopen(const char*, const char*);
FILE* freopen(const char*, const char*, FILE*);
int fprintf(FILE*, const char*, ...) MACOS_PRINTF_FORMAT(2, 3);
int printf(const char*, ...) MACOS_PRINTF_FORMAT(1, 2);
int sprintf(char*, const char*, ...) MACOS_PRINTF_FORMAT(2, 3);
int snprintf(char*, size_t, const char*, ...) MACOS_PRINTF_FORMAT(3, 4);
int vfprintf(FILE*, const char*, va_list) MACOS_PRINTF_FORMAT(2, 0);
int vprintf(const char*, va_list) MACOS_PRINTF_FORMAT(1, 0);
int vsprintf(char*, const char*, va_list) MACOS_PRINTF_FORMAT(2, 0);
int vsnprintf(char*, size_t, const char*, va_list) MACOS_PRINTF_FORMAT(3, 0);
int asprintf(char**, const char*, ...) MACOS_PRINTF_FORMAT(2, 3);
int vasprintf(char**, const char*, va_list) MACOS_PRINTF_FORMAT(2, 0);
int fscanf(FILE*, const char*, ...);
int scanf(const char*, ...);
int sscanf(const char*, const char*, ...);
int vfscanf(FILE*, const char*, va_list);
int vscanf(const char*, va_list);
int vsscanf(const char*, const char*, va_list);
int fgetc(FILE*);
char* fgets(char*, int, FILE*);
int fputc(int, FILE*);
int fputs(const char*, FILE*);
int getc(FILE*);
int getchar(void);
int putc(int, FILE*);
int putchar(int);
int puts(const char*);
int ungetc(int, FILE*);
size_t fread(void*, size_t, size_t, FILE*);
size_t fwrite(const void*, size_t, size_t, FILE*);
int fgetpos(FILE*, fpos_t*);
int fsetpos(FILE*, const fpos_t*);
int fseek(FILE*, long, int);
long ftell(FILE*);
void rewind(FILE*);
void clearerr(FILE*);
int feof(FILE*);
int ferror(FILE*);
void perror(const char*);
int remove(const char*);
int rename(const char*, const char*);
FILE* tmpfile(void);
char* tmpnam(char*);

MACOS_C_END
