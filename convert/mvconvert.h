/* libmvconvert: DEVMODEs, PrintTickets and PrintCapabilities as a product converts them, without a printer and without
   a print subsystem. For C99 and C++.

   A product is opened once and used for any number of conversions. All functions may be called from any thread, also
   for one product at once; a product is closed by one thread when no other one uses it. What the products share is
   freed with the last one, and there may be a next one then. Nothing of the process is changed: neither its locale,
   folder, environment and signals nor its standard streams. The one thing that cannot be in it beside an open product
   is a store of printers that other code has opened through this driver family's own libraries.

   Products' files are read when they are used: none may be changed or moved while the product is open. */
#ifndef MVCONVERT_H
#define MVCONVERT_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define MVCONVERT_API __attribute__((visibility("default")))

/* An open product; the caller's until mvconvert_close. */
typedef struct mvconvert_product mvconvert_product;

/* What a call came to. Each call sets all members, whatever they were: an earlier result has to be freed before. */
typedef struct mvconvert_result {
    /* What was made: a DEVMODE, or a document as XML in UTF-8. NULL after a failure and of mvconvert_open. */
    void* data;
    /* Its bytes; a NUL that is not counted follows them. */
    size_t size;
    /* UTF-8, each line with a line feed at its end. Of a success a line for each setting that is lost or ignored, NULL
       when none is. Of a failure a sentence with the reason, then lines with what the component reported; NULL only
       when there is no memory for it. */
    char* text;
    /* Of MVCONVERT_FAILED and MVCONVERT_NO_MEMORY what the component answered, an HRESULT; else 0. */
    int32_t hresult;
} mvconvert_result;

/* What the functions return. */
enum {
    MVCONVERT_OK = 0,
    MVCONVERT_BAD_INPUT = 1,   /* a document, a DEVMODE or a product's file cannot be read, or is something else */
    MVCONVERT_FAILED = 2,      /* the component refused */
    MVCONVERT_NO_PRODUCT = 3,  /* there is no product of that name, and no file */
    MVCONVERT_NO_MEMORY = 4,   /* also the component's own want of it */
    MVCONVERT_BAD_ARGUMENT = 5 /* NULL where something is needed */
};

/* Opens a product: one of the names that "mvpthost product list" shows, or the path of a product file, in UTF-8.
 *opened is NULL after a failure. */
MVCONVERT_API int mvconvert_open(const char* product, mvconvert_product** opened, mvconvert_result* result);

/* The functions below take what "mvpthost convert" takes, up to 64 MiB: a DEVMODE as raw bytes, as hex or Base64 text,
   in a .reg file with one value "Default DevMode", or inside a ticket; a ticket as XML or inside an XPS package. Sizes
   are in bytes. What is handed in stays the caller's and unchanged. */

/* The PrintTicket of a DEVMODE. */
MVCONVERT_API int mvconvert_devmode_to_ticket(mvconvert_product* product, const void* devmode, size_t size,
                                              mvconvert_result* result);

/* The base after the ticket was applied to it: what the ticket does not state stays. Without a base (NULL and 0) the
   product's default DEVMODE. */
MVCONVERT_API int mvconvert_ticket_to_devmode(mvconvert_product* product, const void* ticket, size_t ticket_size,
                                              const void* base, size_t base_size, mvconvert_result* result);

/* The PrintCapabilities for a job of that ticket. Without a ticket (NULL and 0) for the product's own settings. */
MVCONVERT_API int mvconvert_capabilities(mvconvert_product* product, const void* ticket, size_t ticket_size,
                                         mvconvert_result* result);

/* The DEVMODE of a job for which nothing was set, named after the product's model. Equal of each opening of a product
   by one user, whose name it holds. */
MVCONVERT_API int mvconvert_default_devmode(mvconvert_product* product, mvconvert_result* result);

/* Frees what a call has left in the result and clears it, so that it may be freed again. The result is the caller's;
   NULL is taken. */
MVCONVERT_API void mvconvert_free(mvconvert_result* result);

/* Closes the product; results that it gave stay. NULL is taken. */
MVCONVERT_API void mvconvert_close(mvconvert_product* product);

/* The library's version, "1.2.3"; its own, never freed. */
MVCONVERT_API const char* mvconvert_version(void);

#ifdef __cplusplus
}
#endif

#endif
