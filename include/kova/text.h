/* text: shared routines over texts. */
#ifndef KOVA_TEXT_H
#define KOVA_TEXT_H

#include <kova/accessors.h>

KOVA_BEGIN_EXPORTS

/* Removes leading and trailing newlines in place; returns s. */
char *trim_string_newline(char *s);
/* 0, or -1 when value holds markup or shell quoting, plain or percent-encoded. ";" and "&" are allowed. */
int checkXSSattack(const char *value);
/* Field number index (from 0) of a comma-separated text, which is split in place; empty fields do not
 * count. NULL when there are fewer, for a NULL text and for an index below 0. */
char *getparametersInfo(char *s, int index);
/* Answers the same, for the records that the LTE daemon publishes; the empty record is not even looked at. */
char *getnetparametersInfo(char *s, int index);
/* Host of "scheme://host[:port][/path]", at most 255 characters; 0, or -1 for a text that is empty or has
 * no "//". */
int get_hostname_from_http_url(const char *url, char *out, int outlen);
int hostname_type(const char *host); /* 2: digits and dots only, 1: a name, -1: empty */
/* Formats a byte count as "N bytes", "N KB", "N.NN MB" or "N.NN GB". */
void changeUnit(const char *count, char *out, int outlen);

KOVA_END_EXPORTS

#endif
