#ifndef QVRCOM_COMPONENT_PLUGIN_H
#define QVRCOM_COMPONENT_PLUGIN_H

/* The interface of plug-in libraries that bring components, version 1. It needs nothing but this header and
   serves C11 and C++ alike. docs/plugins.md tells where a library goes and which components there are.

   A library exports one function, qvrcom_offer_components(), which says what the library offers. Everything
   is called on one thread at a time; nothing here is kept beyond the call unless it says so. Texts are UTF-8.

   A library in C++ may let an exception out of any function here: the program reports it as that call's
   failure. */

#include <stddef.h>
#include <stdint.h>

#define QVRCOM_COMPONENT_PLUGIN_VERSION 1u

#if defined(_WIN32)
#define QVRCOM_PLUGIN_EXPORT __declspec(dllexport)
#else
#define QVRCOM_PLUGIN_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* What create and call return. Any other number is a failure too. */
enum { QVRCOM_DONE = 0, QVRCOM_FAILED = 1, QVRCOM_NO_SUCH_OPERATION = 2 };

/* `bytes` is never null and followed by a zero byte that `length` does not count. */
typedef struct qvrcom_text {
  const char* bytes;
  size_t length;
} qvrcom_text;

/* Hands a text to the program, which copies it; when it is called again, the last text counts. A null `text`
   is the null answer. `receiver` is the one that came with the call. Throws nothing. */
typedef void (*qvrcom_answer)(void* receiver, const char* text, size_t length);

/* A component that the library offers. */
typedef struct qvrcom_component {
  /* The name it is created by, "QVRStats.Stats": not empty, without control characters. */
  const char* name;

  /* Makes one and puts it into *self, which holds null before. On failure answers with the reason and returns
     something else than QVRCOM_DONE; destroy is then not called. Null when a component has no state. */
  int (*create)(void** self, qvrcom_answer answer, void* receiver);

  /* Ends one that create made. May be null. */
  void (*destroy)(void* self);

  /* Carries out an operation. QVRCOM_DONE and an answer of at most 16 MiB, or without one the null answer;
     otherwise a failure, whose reason, if it is answered, is one sentence of at most 4096 bytes.
     `arguments` is null when `count` is 0. */
  int (*call)(void* self, const char* operation, const qvrcom_text* arguments, size_t count,
              qvrcom_answer answer, void* receiver);
} qvrcom_component;

/* What a library offers; `version` comes first in every version of this interface. */
typedef struct qvrcom_component_plugin {
  uint32_t version; /* QVRCOM_COMPONENT_PLUGIN_VERSION */
  uint32_t count;   /* 1 to 256 */
  const qvrcom_component* components;
} qvrcom_component_plugin;

/* The exported function. What it returns stays as it is until the program ends. */
QVRCOM_PLUGIN_EXPORT const qvrcom_component_plugin* qvrcom_offer_components(void);

#ifdef __cplusplus
}
#endif

#endif
