// The host API, LISP side: lists, the function registry, symbols, calls, printing, variables, user input, help.
#pragma once

#include "host/host_api_types.h"

/// @name Lists (chains of result buffers)
/// A list belongs to exactly one side. The caller of `kvedGetSym`, `kvedInvoke`, `kvedGetArgs` or a build function
/// releases the list with `kvutRelRb`; a list passed to the host as an argument is copied by the host and stays with
/// the caller.
/// @{

/// Returns a new node of the type, its value zero or null. Null for an unknown type code.
KV_HOST_API KvResultBuffer* kvutNewRb(int type);
/// A copy of the text, allocated as the host's nodes own it. Null text gives null.
KV_HOST_API wchar_t* kvutNewString(const wchar_t* text);
/// Releases a chain with all its strings. Null is allowed. Answers kvstatus::normal.
KV_HOST_API int kvutRelRb(KvResultBuffer* chain);
/// Releases one string made by `kvutNewString` and sets the pointer to null.
KV_HOST_API void kvutDelBuffer(wchar_t*& buffer);
/// A chain from (type, value) pairs ended by 0: double for real; `const double*` for points; int for integers;
/// `const wchar_t*` for strings (copied); KvEntityName for entity names; KvResultBuffer* for splice; nothing for
/// list marks, nil and T. Null when a type is unknown; what was built is then released, spliced chains included.
KV_HOST_API KvResultBuffer* kvutBuildList(int type, ...);
/// @}

/// @name Function registry
/// A module names its LISP functions when it is loaded and again for each drawing; the host then calls the bound
/// function, which reads the code and the arguments and sets its value with one of the `kvedRet` functions.
/// @{

/// Makes `name` (without case) a LISP function with this code of the calling module. kvstatus::normal on success,
/// else kvstatus::rejected.
KV_HOST_API int kvedDefun(const wchar_t* name, int code);
/// Binds the function that serves the code. Returns 1 when the code is known, otherwise 0.
KV_HOST_API int kvedRegFunc(int (*function)(), int code);
/// The code of the function being called; negative outside a call.
KV_HOST_API int kvedGetFunCode();
/// The arguments of the function being called as a new chain, null when there are none. Caller releases.
KV_HOST_API KvResultBuffer* kvedGetArgs();
/// Sets the value of the function being called (the list is copied). The last call wins. Several values without list
/// marks around them return a list of them; kvstatus::rejected for marks that do not match.
KV_HOST_API int kvedRetList(const KvResultBuffer* chain);
KV_HOST_API int kvedRetT();
KV_HOST_API int kvedRetNil();
/// @}

/// @name Symbols and calls
/// @{

/// The value of a symbol (without case) as a new chain in `*value`; a list comes with its listBegin and listEnd, a
/// list of exactly two or three reals inside a list or alone as one point node. An integer comes as shortInteger where
/// it fits 16 bits, else as longInteger; nil inside a list as nil, T as t; a pair (code . value) of a group code and a
/// fitting value as a node of that code. A value with anything else in it (a symbol, another pair) is
/// kvstatus::rejected. The same applies to arguments and to the result of `kvedInvoke`. An unset symbol or one that is
/// nil gives kvstatus::normal with a null list. Caller releases.
KV_HOST_API int kvedGetSym(const wchar_t* name, KvResultBuffer** value);
/// Sets a symbol (without case) to the chain's value (copied). kvstatus::normal on success.
KV_HOST_API int kvedPutSym(const wchar_t* name, const KvResultBuffer* value);
/// Calls a LISP function: the first node is its name as a string, the rest are the arguments. Only functions that
/// were exposed to native code and commands ("c:...") can be reached; any other name is kvstatus::rejected. A LISP
/// error is reported on the command line and gives kvstatus::failed. `*result` is a new list, null for nil. The call
/// may re-enter the plug-in.
/// Every host exposes "veval-str+", which evaluates the form of a text, and its LISP has the function
/// `vz-korvo-defun`, which exposes the function named by a symbol: the plug-in exposes others with it.
KV_HOST_API int kvedInvoke(const KvResultBuffer* call, KvResultBuffer** result);
/// @}

/// @name Command line
/// @{

/// Prints a text on the host's command line unchanged: formats are filled by the caller.
KV_HOST_API int kvutPrintf(const wchar_t* text);
/// Whether `text` matches a wildcard pattern, without case: # one digit, @ one letter, . one other character,
/// * any run, ? one character, ~ first: not, [...] one of, [~...] none of, - inside brackets a range, comma an
/// alternative, ` takes the next character literally. kvstatus::normal on a match.
KV_HOST_API int kvutWcMatch(const wchar_t* text, const wchar_t* pattern);
/// The value of a host variable in a new node in `*value` ("TILEMODE": shortInteger, 1 model space, 0 paper
/// space; "LISPERROR": string, why the last call by `kvedInvoke` failed, with the file and line of the LISP at fault as far
/// as they are known; a host without it rejects the name, and messages lack the reason). kvstatus::normal, else
/// kvstatus::rejected. Caller releases.
KV_HOST_API int kvedGetVar(const wchar_t* name, KvResultBuffer** value);
/// Prepares the next input: flag 1 forbids an empty input; keywords separated by blanks, null for none.
KV_HOST_API int kvedInitGet(int flags, const wchar_t* keywords);
/// Lets the user pick one entity. kvstatus::normal with name and point, kvstatus::none for a pick of nothing,
/// kvstatus::cancel.
KV_HOST_API int kvedEntSel(const wchar_t* prompt, KvEntityName& entity, KvPoint3d& point);
/// Releases a selection. Harmless for a single pick.
KV_HOST_API int kvedSSFree(KvEntityName selection);
/// Shows a help topic.
KV_HOST_API int kvedHelp(const wchar_t* topic);
/// @}
