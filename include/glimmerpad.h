/* The one header that a host of glimmerpad.dll needs. Plain C, 32-bit Windows.
 *
 * A host loads the library, calls initLibrary() once with an interface record, then hostInit(), and from then on
 * drives the application through the record. Every call comes from one thread, the one that owns the host's windows;
 * the library's windows live there too and are served by the host's own message loop. All text is UTF-16 and ends
 * with a zero unit, unless it says otherwise. docs/host-interface.md has the whole story. */
#ifndef GLIMMERPAD_H
#define GLIMMERPAD_H

#include <stdint.h>
#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

#define GLIMMERPAD_CALL __cdecl     /* the two exports and the five entry points: the caller removes the arguments */
#define GLIMMERPAD_NOTIFY __stdcall /* the host's callback: the callee removes them */

#define GLIMMERPAD_INTERFACE_VERSION 5u
#define GLIMMERPAD_INTERFACE_SIZE 24u

/* Kinds of host, for hostInit(). Firefox is refined from the name of the running program: a name with THUNDERBIRD,
 * SEAMONKEY or VISTRANE-CONTAINER in it makes the kind Thunderbird, SeaMonkey or Internet Explorer. */
#define GLIMMERPAD_STANDALONE 0u
#define GLIMMERPAD_FIREFOX 1u
#define GLIMMERPAD_INTERNET_EXPLORER 2u
#define GLIMMERPAD_THUNDERBIRD 3u
#define GLIMMERPAD_SEAMONKEY 4u
#define GLIMMERPAD_CHROME 5u

/* What is to happen with a capture. */
#define GLIMMERPAD_EDIT 0            /* open in the editor and show the main window */
#define GLIMMERPAD_SAVE 1            /* save, with a dialog */
#define GLIMMERPAD_COPY 2            /* to the clipboard */
#define GLIMMERPAD_MAIL 3            /* by e-mail */
#define GLIMMERPAD_EXTERNAL_VIEWER 4 /* in the external viewer or editor */
#define GLIMMERPAD_UPLOAD 5          /* upload */
#define GLIMMERPAD_LOAD 6            /* nothing beyond loading it */
#define GLIMMERPAD_PRINT 7           /* print */
#define GLIMMERPAD_ENCODE_TEXT 8     /* as base64 text, fetched with "getEncodedContent" */
#define GLIMMERPAD_ENCODE_IMAGE 9    /* as PNG file, fetched with "getEncodedContent" */
#define GLIMMERPAD_SAVE_QUIETLY 10   /* save under the default name, without a question */
/* Added to an action in hostFinishCapture(): no capture sound. */
#define GLIMMERPAD_SILENT 100

/* Limits. Beyond them a call fails as documented. */
#define GLIMMERPAD_MAX_SIDE 200000               /* pixels of width or height */
#define GLIMMERPAD_MAX_PICTURE_BYTES 0x40000000u /* width x height x 4 */
#define GLIMMERPAD_MAX_TEXT 1048576u             /* UTF-16 units of one text, without its zero; the rest is cut */
#define GLIMMERPAD_MAX_PAYLOAD 0x4000000u        /* bytes of a payload, packed or not */
#define GLIMMERPAD_MAX_JSON_DEPTH 32             /* arrays and objects inside one another */

/* Asks the host to act. The result is ignored; both texts are the library's and end with the call.
 * name: 8-bit text, one of "openURL", "enableResumeMenu", "scrollTo", "scrollToFX", "setupMode", "getInfo". */
typedef void(GLIMMERPAD_NOTIFY* GlimmerpadHostNotify)(const char* name, const wchar_t* value);

/* What a host passes to hostInit(). Only the first word is read, during the call. */
typedef struct GlimmerpadHostRecord {
    GlimmerpadHostNotify notify; /* may be null */
} GlimmerpadHostRecord;

/* What the second argument of the JSON commands points at. Both are the host's and are read during the call. */
typedef struct GlimmerpadPayload {
    uint32_t length;   /* bytes */
    const void* bytes; /* UTF-8 JSON; for "JSONFunctionZ" a zlib stream of it */
} GlimmerpadPayload;

/* What "getEncodedContent" fills: the outcome of the last capture if its action was ENCODE_TEXT (ASCII, a zero byte
 * follows) or ENCODE_IMAGE, else null and 0. It is the library's, until the next capture or hostShutdown(). */
typedef struct GlimmerpadContent {
    const void* data;
    uint32_t length; /* bytes, without the zero byte */
} GlimmerpadContent;

typedef void(GLIMMERPAD_CALL* GlimmerpadHostInit)(uint8_t kind, const GlimmerpadHostRecord* host);
/* data: a PNG file of unsaid length, or null. width, height: the size that the picture shall have, or 0. */
typedef void(GLIMMERPAD_CALL* GlimmerpadHostCapture)(const wchar_t* url, const wchar_t* title, const wchar_t* tag,
                                                     const void* data, int32_t action, int32_t width, int32_t height);
typedef void(GLIMMERPAD_CALL* GlimmerpadHostShutdown)(void);
/* 1 done, 0 not. What the last three are, each command says; a number travels as itself. */
typedef int32_t(GLIMMERPAD_CALL* GlimmerpadHostExecute)(const wchar_t* command, void* out, uintptr_t arg1,
                                                        uintptr_t arg2);
typedef void(GLIMMERPAD_CALL* GlimmerpadHostFinishCapture)(const wchar_t* url, const wchar_t* title, int32_t code);

/* Six 32-bit words: the version and the addresses of the entry points, for GLIMMERPAD_ENTRY. */
typedef struct GlimmerpadInterface {
    uint32_t version; /* set to GLIMMERPAD_INTERFACE_VERSION before initLibrary() */
    uint32_t hostInit;
    uint32_t hostCapture;
    uint32_t hostShutdown;
    uint32_t hostExecute;
    uint32_t hostFinishCapture;
} GlimmerpadInterface;

/* The function that a word of the record stands for:
 * GlimmerpadHostInit host_init = GLIMMERPAD_ENTRY(GlimmerpadHostInit, record.hostInit); */
#define GLIMMERPAD_ENTRY(type, word) ((type)(uintptr_t)(word))

/* The exports, as types for GetProcAddress().
 * initLibrary: 1 and the first `size` bytes of the record filled (pass 24), when record->version is 5; else 0 and
 * nothing written.
 * runZKApplication: runs the standalone program with the process's command line; returns when it ends. */
typedef int32_t(GLIMMERPAD_CALL* GlimmerpadInitLibrary)(GlimmerpadInterface* record, uint32_t size);
typedef void(GLIMMERPAD_CALL* GlimmerpadRunApplication)(void);

#ifdef __cplusplus
}
static_assert(sizeof(GlimmerpadInterface) == GLIMMERPAD_INTERFACE_SIZE, "the record is six 32-bit words");
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
_Static_assert(sizeof(GlimmerpadInterface) == GLIMMERPAD_INTERFACE_SIZE, "the record is six 32-bit words");
#endif

#endif
