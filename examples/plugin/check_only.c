/* A component plug-in in plain C: takes the place of the bundled decoder of system images. It looks whether
   the file is one and leaves the database alone. */

#include <qvrcom/component_plugin.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* "QVDB", version 1, a system image: docs/formats/dbase.md. */
static const char kBeginning[6] = {'Q', 'V', 'D', 'B', 1, 1};

static void say(qvrcom_answer answer, void* receiver, const char* text) {
  answer(receiver, text, strlen(text));
}

/* Suite paths have backslashes. */
static FILE* open_suite_file(const qvrcom_text* path) {
  char* native = malloc(path->length + 1);
  if (native == NULL) return NULL;
  memcpy(native, path->bytes, path->length + 1);
  for (char* place = native; *place != '\0'; ++place)
    if (*place == '\\') *place = '/';
  FILE* file = fopen(native, "rb");
  free(native);
  return file;
}

static int check_system_image(const qvrcom_text* path, qvrcom_answer answer, void* receiver) {
  FILE* file = open_suite_file(path);
  if (file == NULL) {
    say(answer, receiver, "The system image cannot be opened.");
    return QVRCOM_DONE; /* an answer other than "OK" is shown to the user */
  }
  char found[sizeof kBeginning];
  const size_t length = fread(found, 1, sizeof found, file);
  fclose(file);
  const int same = length == sizeof found && memcmp(found, kBeginning, sizeof found) == 0;
  say(answer, receiver, same ? "OK" : "The file is not a system image of version 1.");
  return QVRCOM_DONE;
}

/* DecodeSystemImage(configuration, file) */
static int call(void* self, const char* operation, const qvrcom_text* arguments, size_t count,
                qvrcom_answer answer, void* receiver) {
  (void)self;
  if (strcmp(operation, "DecodeSystemImage") != 0) return QVRCOM_NO_SUCH_OPERATION;
  if (count == 2) return check_system_image(&arguments[1], answer, receiver);
  say(answer, receiver, "DecodeSystemImage takes a configuration and a file.");
  return QVRCOM_FAILED;
}

static const qvrcom_component kComponents[] = {{"QVRBIN7_2.Sys", NULL, NULL, call}};

static const qvrcom_component_plugin kPlugin = {QVRCOM_COMPONENT_PLUGIN_VERSION, 1, kComponents};

const qvrcom_component_plugin* qvrcom_offer_components(void) {
  return &kPlugin;
}
