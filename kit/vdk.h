/* The client kit: every type and call that crosses between a host application and a client.
 *
 * A host loads a client's shared library, gives it one V_HostT with V_ClientAttach, calls V_ClientInitialize once and
 * then sends notifications and dialog events. A client reaches the host only through the V_... and NetLib... calls
 * below; the kit's runtime forwards each of them to the table. Everything happens on the host's thread.
 *
 * Text is NUL-terminated UTF-8; a null pointer means "no value". The receiver of a char *, a list or a reply owns it
 * and gives it back with the function named beside it; arguments are borrowed for the length of the call. A call that
 * the host's table does not hold (an older host) answers as if there were nothing: 0, null, an empty list. */
#ifndef VDK_H
#define VDK_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define VDK_EXPORT __declspec(dllexport)
#else
#define VDK_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Types ------------------------------------------------------------------------------------------------------ */

/* An object of the host: the session, a document, a book, a map, a dialog, a dialog's item. 0 is "none". */
typedef uint32_t V_ObjectT;

typedef struct V_StringsT {
  uint32_t len;
  char **val;
} V_StringsT;

typedef struct V_TypedValT V_TypedValT;

typedef struct V_TypedValsT {
  uint32_t len;
  V_TypedValT *val;
} V_TypedValsT;

enum { V_KIND_INTEGER = 1, V_KIND_STRING = 3, V_KIND_STRINGS = 6, V_KIND_TYPED_VALUES = 20 };

/* One value of a reply; `kind` says which member of `u` holds it. */
struct V_TypedValT {
  int32_t kind;
  union {
    int32_t integer;
    char *string;
    V_StringsT strings;
    V_TypedValsT values;
  } u;
};

enum { V_SESSION = 1 };
enum { V_NOTIFY_CALL_CLIENT = 13 };
enum { V_ERROR_NONE = 0, V_ERROR_FAILED = 1, V_ERROR_BAD_REQUEST = -43 };

/* What V_OP_TYPE answers. */
enum { V_TYPE_SESSION = 1, V_TYPE_DOCUMENT = 2, V_TYPE_BOOK = 3, V_TYPE_DIALOG = 4, V_TYPE_DIALOG_ITEM = 5 };

/* Session properties. */
enum {
  V_SP_LOG_ECHO = 825,                 /* int: mirrors the echo flag of the transformation log */
  V_SP_XSL_START_SECTION = 832,        /* int: runs of a bare stylesheet write a start section */
  V_SP_XSL_OBJECT_START_SECTION = 833, /* int: they do so on behalf of V_SP_XSL_SECTION_OBJECT */
  V_SP_XSLT_PROCESSORS = 1506,         /* typed values: per processor a list of name, class path, class name;
                                      behind them, for each attribute of the factory, its name, its type ("string",
                                      "integer", "number" or "boolean") and its value as text; "vlxslt:extensions" is no
                                      attribute:         whether its stylesheets may call code */
  V_SP_XSL_SECTION_OBJECT = 2401,      /* object */
  V_SP_PRODUCT_NAME = 2893,            /* string */
  V_SP_INSTALL_DIR = 3001,             /* string, ends in a separator */
  V_SP_STRUCTURE_DIR = 3002,           /* string, without a separator at its end */
  V_SP_DEFAULT_CATALOGUE = 3003,       /* string: as configured, maybe with a path variable */
  V_SP_TEMP_DIR = 3004,                /* string */
  V_SP_ACTIVE_DOCUMENT = 3005,         /* object */
  V_SP_ACTIVE_BOOK = 3006,             /* object */
  V_SP_FIRST_OPEN_DOCUMENT = 3007,     /* object; go on with V_OP_NEXT_OPEN_DOCUMENT */
  V_SP_APPLICATIONS = 3008,            /* strings: the names of the structure applications */
  V_SP_JAVA_HOME = 3009,               /* string */
  V_SP_JAVA_OPTIONS = 3010,            /* strings */
  V_SP_TRUSTED_HOSTS = 3011,    /* strings: hosts that documents and stylesheets may be fetched from, as "name" or
                                   "name:port"; "*" for all; none without it */
  V_SP_ALLOW_EXTENSIONS = 3012, /* int: stylesheets may call code, whichever processor applies them */
  V_SP_WRITE_FOLDERS = 3013,    /* strings: where a stylesheet may put further results: paths, "output" for the
                                   folder of the principal one and all below it, "none", or "*"; "output" without it */
  V_SP_UNSYNCED_OUTPUTS = 3014, /* int: success is reported before the data is on disk */
  V_SP_JOBS = 3015              /* int: how many inputs of a run are transformed at once; 0: as many as the machine has
                                   cores and memory for */
};

/* Properties of documents, books and maps. A map is a document with V_OP_IS_DITA_MAP set. */
enum {
  V_OP_NAME = 20,                 /* string */
  V_OP_XSL_START_SECTION = 110,   /* int */
  V_OP_TYPE = 3101,               /* int: V_TYPE_... */
  V_OP_FULL_NAME = 3102,          /* string: the path; empty while the document was never saved */
  V_OP_LABEL = 3103,              /* string: what the title shows */
  V_OP_MODIFIED = 3104,           /* int: has unsaved changes */
  V_OP_SHOWN = 3105,              /* int: open on screen */
  V_OP_NEXT_OPEN_DOCUMENT = 3106, /* object */
  V_OP_IS_DITA_MAP = 3107,        /* int */
  V_OP_APPLICATION = 3108         /* string: the structure application */
};

/* Properties of dialogs and of their items. */
enum {
  V_DP_TITLE = 3201,               /* string */
  V_DP_DOUBLE_CLICK = 3202,        /* int: the event being served was a double click */
  V_IP_STATE = 3301,               /* int: on/off of a radio or check box, index of a list or pop-up (-1 none) */
  V_IP_TEXT = 3302,                /* string */
  V_IP_LABELS = 3303,              /* strings */
  V_IP_SENSITIVE = 3304,           /* int */
  V_IP_VISIBLE = 3305,             /* int */
  V_IP_REPORTS_DOUBLE_CLICK = 3306 /* int */
};

/* Item numbers of a dialog event beside those of the items. */
enum { V_ITEM_FRAME_CLOSED = -1, V_ITEM_INITIALISE = -9 };

enum { V_ALERT_PLAIN = 0, V_ALERT_YES_NO = 1, V_ALERT_YES_NO_DEFAULT_NO = 2, V_ALERT_OK_CANCEL = 3 };
enum { V_CANCEL_AFTER_JOB = 1, V_CANCEL_AT_ONCE = 2 }; /* the job in hand ends well; it is given up */
enum { V_ANSWER_DECLINE = 0, V_ANSWER_PROCEED = 1 };   /* No or Cancel; Yes or OK */
enum { V_CHOOSE_OPEN = 0, V_CHOOSE_FOLDER = 1, V_CHOOSE_SAVE = 2 };

/* How a transformation saves its outputs, and opens them. */
enum { V_SAVE_NOT = 0, V_SAVE_WHERE_ASKED = 1, V_SAVE_IN_FOLDER = 2, V_SAVE_BESIDE_INPUT = 3 };
enum { V_OPEN_NOT = 0, V_OPEN_IN_HOST = 1, V_OPEN_BY_DEFAULT = 2 };

/* Which components a walk yields beside the local, processed ones. */
enum { V_WALK_EXTERNAL = 1, V_WALK_RESOURCE_ONLY = 2, V_WALK_ALL = 3 };

typedef struct V_WalkT V_WalkT;
typedef struct V_StrListT V_StrListT;

/* ---- What happens during a run ------------------------------------------------------------------------------------
 */

/* A run has jobs, one for each input, numbered from 0. Its events arrive in this order, one job after the other:
 *
 *   V_RUN_BEGINS   count
 *   V_JOB_BEGINS   job, path (the input), stylesheet, processor, output
 *   V_RUN_MESSAGE, V_RUN_DIAGNOSTIC, V_RUN_FILE_READ, V_RUN_OUTPUT
 *   V_JOB_ENDS     job, status
 *   V_RUN_ENDS
 *
 * Diagnostics also come outside of runs and jobs, with the job -1, or before V_RUN_BEGINS with the job that they keep
 * from being done. An event is reported before the log shows it on the console. */
enum {
  V_RUN_BEGINS = 1,
  V_JOB_BEGINS = 2,
  V_RUN_DIAGNOSTIC = 3,
  V_RUN_MESSAGE = 4,
  V_RUN_FILE_READ = 5,
  V_RUN_OUTPUT = 6,
  V_JOB_ENDS = 7,
  V_RUN_ENDS = 8
};

/* How a job ended: done; failed; refused by the person, or by a place that cannot be written; its input missing; left
 * out, being a file of another application; not begun, because the run was cancelled. */
enum {
  V_JOB_DONE = 0,
  V_JOB_FAILED = 1,
  V_JOB_REFUSED = 2,
  V_JOB_MISSING = 3,
  V_JOB_LEFT_OUT = 4,
  V_JOB_CANCELLED = 5
};

enum { V_SEVERITY_WARNING = 1, V_SEVERITY_ERROR = 2, V_SEVERITY_FATAL = 3 };

/* The result itself; a further one that the stylesheet wrote; a temporary one that is opened in the host, or handed to
 * the default program, when the run ends, and is deleted after that. */
enum { V_OUTPUT_PRINCIPAL = 1, V_OUTPUT_SECONDARY = 2, V_OUTPUT_OPENED = 3, V_OUTPUT_LAUNCHED = 4 };

/* `size` is sizeof(V_RunEventT) as the client was built; members beyond it are not there. Texts are borrowed for the
 * length of the call; null where an event has none. */
typedef struct V_RunEventT {
  uint32_t size;
  int32_t kind;
  int32_t job;            /* -1 outside of jobs */
  int32_t count;          /* V_RUN_BEGINS: how many jobs */
  int32_t status;         /* V_JOB_ENDS */
  int32_t severity;       /* V_RUN_DIAGNOSTIC */
  int32_t outputKind;     /* V_RUN_OUTPUT */
  int32_t line;           /* V_RUN_DIAGNOSTIC: from 1; -1 or 0 when unknown */
  int32_t column;         /* likewise */
  const char *path;       /* input; file with the problem, as the log shows it; file read or written */
  const char *stylesheet; /* V_JOB_BEGINS: null when the input names it itself */
  const char *processor;  /* V_JOB_BEGINS */
  const char *output;     /* V_JOB_BEGINS: where the result goes; null when it is temporary, or there is none */
  const char *code;       /* V_RUN_DIAGNOSTIC: the processor's own, as "XTDE0030" */
  const char *text;       /* V_RUN_DIAGNOSTIC, V_RUN_MESSAGE */
} V_RunEventT;

/* ---- The table that a host gives to a client --------------------------------------------------------------------- */

/* `size` is sizeof(V_HostT) as the host was built; a client calls nothing beyond it. `host` goes back to the host as
 * the first argument of every function. Functions never throw. */
typedef struct V_HostT {
  uint32_t size;
  void *host;
  void *(*allocate)(void *host, size_t count, size_t size);
  void (*release)(void *host, void *block);
  int32_t (*getError)(void *host);
  void (*setError)(void *host, int32_t error);
  void (*setEncoding)(void *host, const char *encoding);
  void (*requestNotification)(void *host, int32_t notification, int32_t on);
  int32_t (*getInt)(void *host, V_ObjectT object, int32_t property);
  void (*setInt)(void *host, V_ObjectT object, int32_t property, int32_t value);
  char *(*getString)(void *host, V_ObjectT object, int32_t property);
  void (*setString)(void *host, V_ObjectT object, int32_t property, const char *value);
  V_ObjectT (*getObject)(void *host, V_ObjectT object, int32_t property);
  V_StringsT (*getStrings)(void *host, V_ObjectT object, int32_t property);
  void (*setStrings)(void *host, V_ObjectT object, int32_t property, const V_StringsT *value);
  V_TypedValsT (*getTypedVals)(void *host, V_ObjectT object, int32_t property);
  V_TypedValsT (*callClient)(void *host, const char *client, const char *request);
  void (*returnTypedVals)(void *host, V_TypedValsT reply);
  int32_t (*alert)(void *host, const char *text, int32_t kind);
  char *(*chooseFile)(void *host, int32_t kind, const char *title, const char *filter, const char *startFolder);
  void (*writeConsole)(void *host, const char *text);
  int32_t (*isCancelled)(void *host);
  void (*reportProgress)(void *host, int32_t index, int32_t count, const char *path);
  void (*reportUsage)(void *host, const char *group, const char *client, const char *what);
  V_ObjectT (*openDocument)(void *host, const char *path, const char *asName);
  int32_t (*launch)(void *host, const char *path);
  V_WalkT *(*startWalk)(void *host, V_ObjectT object, int32_t options);
  int32_t (*nextComponent)(void *host, V_WalkT *walk, char **path);
  void (*endWalk)(void *host, V_WalkT *walk);
  V_ObjectT (*openDialog)(void *host, const char *name);
  V_ObjectT (*dialogItem)(void *host, V_ObjectT dialog, int32_t item);
  void (*runDialog)(void *host, int32_t number, V_ObjectT dialog);
  void (*keepDialogUp)(void *host, V_ObjectT dialog);
  int32_t (*netIsNetFile)(void *host, const char *path);
  char *(*netQueryCacheForUrl)(void *host, const char *url);
  int32_t (*netSave)(void *host, const char *url);
  V_ObjectT (*makeGrid)(void *host, V_ObjectT dialog, int32_t item, int32_t frameItem, const char *header,
                        const char *noValueText);
  /* `reserved` is 1: hosts of the first version read it as "the first cell may be edited". */
  int32_t (*gridAddRow)(void *host, V_ObjectT grid, const V_StringsT *titles, const V_StringsT *values,
                        int32_t reserved);
  int32_t (*gridRowCount)(void *host, V_ObjectT grid);
  int32_t (*gridCellCount)(void *host, V_ObjectT grid, int32_t row);
  char *(*gridCell)(void *host, V_ObjectT grid, int32_t row, int32_t cell);
  int32_t (*gridSelection)(void *host, V_ObjectT grid, int32_t *cell);
  void (*gridSelect)(void *host, V_ObjectT grid, int32_t row, int32_t cell);
  void (*gridDeleteRow)(void *host, V_ObjectT grid, int32_t row);
  void (*reportRunEvent)(void *host, const V_RunEventT *event);
} V_HostT;

/* ---- Entry points that a client exports -------------------------------------------------------------------------- */

/* Keeps `host`, which must outlive the client. Returns 1, or 0 when the table is too small to work with. */
VDK_EXPORT int32_t V_ClientAttach(const V_HostT *host);
VDK_EXPORT void V_ClientInitialize(void);
/* For V_NOTIFY_CALL_CLIENT `text` is the request; the reply goes back through V_ApiReturnTypedVals before returning. */
VDK_EXPORT void V_ClientNotify(int32_t notification, V_ObjectT object, const char *text, int32_t number);
VDK_EXPORT void V_ClientDialogEvent(int32_t dialog, int32_t item, int32_t modifiers);
/* The last call; the client gives everything back. */
VDK_EXPORT void V_ClientShutdown(void);
/* The client's compiled resources (a .res image), valid until shutdown. */
VDK_EXPORT const void *V_ClientResources(size_t *size);

/* ---- The runtime: memory and text -------------------------------------------------------------------------------- */

/* Remembers the table for all calls below; V_ClientAttach calls it. 0 when the table cannot be used. */
int32_t V_AttachHost(const V_HostT *host);
/* Forgets the table if it is this one, before it goes; any table for null. */
void V_DetachHost(const V_HostT *host);

/* The host's product name, noted at initialisation for texts that show it. Never null. */
void V_SetProductName(const char *name);
const char *V_ProductName(void);

/* Zero-filled memory, or null. */
void *V_Calloc(size_t count, size_t size);
void V_Free(void *block);
/* A copy to be freed with V_Free; null for null. */
char *V_StrCopyString(const char *text);

V_StrListT *V_StrListNew(void);
/* Appends a copy; a null text is kept as an empty one. 0 when out of memory or without a list. */
int32_t V_StrListAppend(V_StrListT *list, const char *text);
/* Borrowed; null when there is no such item. */
const char *V_StrListGet(const V_StrListT *list, uint32_t index);
uint32_t V_StrListLen(const V_StrListT *list);
void V_StrListFree(V_StrListT *list);

void V_FreeStrings(V_StringsT *strings);
/* Frees every value, string and nested list, and leaves an empty list. */
void V_ApiDeallocateTypedVals(V_TypedValsT *values);

/* ---- The runtime: calls to the host ------------------------------------------------------------------------------ */

int32_t V_ApiGetError(void);
void V_ApiSetError(int32_t error);
void V_ApiSetEncoding(const char *encoding);
void V_ApiRequestNotification(int32_t notification, int32_t on);

int32_t V_ApiGetInt(V_ObjectT object, int32_t property);
void V_ApiSetInt(V_ObjectT object, int32_t property, int32_t value);
char *V_ApiGetString(V_ObjectT object, int32_t property); /* V_Free */
void V_ApiSetString(V_ObjectT object, int32_t property, const char *value);
V_ObjectT V_ApiGetObject(V_ObjectT object, int32_t property);
V_StringsT V_ApiGetStrings(V_ObjectT object, int32_t property); /* V_FreeStrings */
void V_ApiSetStrings(V_ObjectT object, int32_t property, const V_StringsT *value);
V_TypedValsT V_ApiGetTypedVals(V_ObjectT object, int32_t property); /* V_ApiDeallocateTypedVals */

/* Sends a request to another client, or to this one, and drops the reply. */
void V_ApiCallClient(const char *client, const char *request);
/* The same with the reply; empty when there is no such client. V_ApiDeallocateTypedVals. */
V_TypedValsT V_ApiCallClientEx(const char *client, const char *request);
/* The reply to the request being served; the host takes it over, the last one counts. */
void V_ApiReturnTypedVals(V_TypedValsT reply);

/* Shows a text or asks a question (V_ALERT_...); V_ANSWER_.... A plain alert answers V_ANSWER_PROCEED. */
int32_t V_ApiAlert(const char *text, int32_t kind);
/* Null when the person dismissed it. `filter` is "Name|pattern|Name|pattern|". V_Free. */
char *V_ApiChooseFile(int32_t kind, const char *title, const char *filter, const char *startFolder);
/* Shows one line, or one line feed, on the host's console. */
void V_ApiWriteConsole(const char *text);
/* Whether the person, or the system, wants the run to stop: V_CANCEL_..., 0 for no. Asked again while a job runs. */
int32_t V_ApiIsCancelled(void);
/* Reports what happens during a run. `event.size` is set by the runtime. */
void V_ApiReportRunEvent(V_RunEventT event);
/* Input number `index` (from 0) of `count` begins. */
void V_ApiReportProgress(int32_t index, int32_t count, const char *path);
void V_ApiReportUsage(const char *group, const char *client, const char *what);
/* Opens a file without further questions; the document is called `asName` unless that is null. 0 when it failed. */
V_ObjectT V_ApiOpenDocument(const char *path, const char *asName);
/* Opens a file in the operating system's default program. */
int32_t V_ApiLaunch(const char *path);

/* Walks the components of a book or a map in document order; null when the object has none. */
V_WalkT *V_ApiStartWalk(V_ObjectT object, int32_t options);
/* 1 and a path (V_Free; null for a component without one), or 0 at the end. */
int32_t V_ApiNextComponent(V_WalkT *walk, char **path);
void V_ApiEndWalk(V_WalkT *walk);

/* Opens a dialog of the calling client's resources by its template's name; 0 when there is none. */
V_ObjectT V_ApiOpenDialog(const char *name);
V_ObjectT V_ApiDialogItem(V_ObjectT dialog, int32_t item);
/* Shows the dialog and returns when it is closed; its events arrive through V_ClientDialogEvent as `number`. */
void V_ApiRunDialog(int32_t number, V_ObjectT dialog);
/* The button event being served does not close the dialog. */
void V_ApiKeepDialogUp(V_ObjectT dialog);

/* Makes a property grid in the place of `frameItem`, in place of one that the dialog had before; 0 when it cannot. What
 * a person selects or edits in it arrives as a dialog event of `item`. An empty value shows as `noValueText`. */
V_ObjectT V_ApiMakeGrid(V_ObjectT dialog, int32_t item, int32_t frameItem, const char *header, const char *noValueText);
/* Appends a row of as many cells as there are titles; its index, or -1. */
int32_t V_ApiGridAddRow(V_ObjectT grid, const V_StringsT *titles, const V_StringsT *values);
int32_t V_ApiGridRowCount(V_ObjectT grid);
int32_t V_ApiGridCellCount(V_ObjectT grid, int32_t row);
/* What the cell shows. V_Free. */
char *V_ApiGridCell(V_ObjectT grid, int32_t row, int32_t cell);
/* The selected row and its cell, -1 for the row itself; -1 when nothing is selected. */
int32_t V_ApiGridSelection(V_ObjectT grid, int32_t *cell);
void V_ApiGridSelect(V_ObjectT grid, int32_t row, int32_t cell);
/* The selection is empty afterwards. */
void V_ApiGridDeleteRow(V_ObjectT grid, int32_t row);

int32_t NetLibIsNetFile(const char *path);
/* The local copy of a network document; null when there is none. V_Free. */
char *NetLibQueryCacheForURL(const char *url);
/* Pushes the local copy back. 1 on success. */
int32_t NetLibSave(const char *url);

#ifdef __cplusplus
}
#endif

#endif
