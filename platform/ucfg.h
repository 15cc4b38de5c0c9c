/* libucfg: the configuration tree. Leaves are texts, addressed by slash-separated paths. */
#ifndef PLATFORM_UCFG_H
#define PLATFORM_UCFG_H

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

int init_ucfg_ex(void); /* opens the tree for this process; 0: open */
int read_ucfg_xml(int handle, const char *path,
                  char *dst); /* handle 0, dst 256 bytes; 0: read, else no such leaf */
int write_ucfg_xml(int handle, const char *path, const char *value); /* 0: stored */
int deinit_ucfg_ex(int keep); /* closes the tree; keep 1: what was written stays */
int Init_Start(void);
int Init_End(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
