/* A machine that fails: calls of the system that the tests have fail, for one call or from one call
 * on. Linked into a test, or preloaded into a program, where the environment says what is to fail.
 *
 * A fault is "CALL N WHAT":
 *   CALL  open (to read), make (or open to write), read, write, mkdir, rename, unlink, close,
 * truncate, lock, stat: such a call on a file below the folder; file: any of these; change: any
 * that changes a file or folder; memory: malloc and its kin N     which call fails, from 1; "N+"
 * for that and all behind it WHAT  EIO, ENOSPC, EMFILE, EINTR, ENOMEM: the call fails so; short: it
 * does half of what was asked, where it reads or writes; kill: the process is killed before the
 * call
 */
#ifndef TESTS_MACHINE_FAULTS_H
#define TESTS_MACHINE_FAULTS_H

#ifdef __cplusplus
extern "C" {
#endif

/* From here on calls are counted, and one fails. A null fault ends that. In a preloaded program it
 * is called when main begins, with INTAKE_FAULT and INTAKE_FAULT_BELOW of the environment. */
void faultsArm(const char* fault, const char* folder);

/* The first call that has failed since then, such as "write /there/info/catalog"; null if none. */
const char* faultsHappened(void);

#ifdef __cplusplus
}
#endif

#endif
