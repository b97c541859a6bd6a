/**
 * The records of the channel data. They are moved byte for byte: what is in them is agreed between
 * the application and the service.
 */
#ifndef HW_QELTVAPI_CHANNEL_RECORDS_H
#define HW_QELTVAPI_CHANNEL_RECORDS_H

#include <stdint.h>

/* Sizes in bytes. */
#define QELTVAPI_SVL_REC_SIZE 396
#define QELTVAPI_TSL_REC_SIZE 628
#define QELTVAPI_FAVORITE_LIST_REC_SIZE 820
#define QELTVAPI_SATL_REC_SIZE 276
#define QELTVAPI_NWL_REC_SIZE 304
#define QELTVAPI_BSL_REC_SIZE 32
#define QELTVAPI_BSL_HEADER_SIZE 16
#define QELTVAPI_QUERY_INFO_SIZE 12
#define QELTVAPI_INTERFACE_BLOCK_SIZE 8

/** One channel: its ids, names and flags. */
typedef struct {
    uint8_t bytes[QELTVAPI_SVL_REC_SIZE];
} QELTVAPI_SVL_REC_T;

/** One transport stream, the multiplex that carries channels. */
typedef struct {
    uint8_t bytes[QELTVAPI_TSL_REC_SIZE];
} QELTVAPI_TSL_REC_T;

/** A favourite list. */
typedef struct {
    uint8_t bytes[QELTVAPI_FAVORITE_LIST_REC_SIZE];
} QELTVAPI_FAVORITE_LIST_REC_T;

/** One satellite. */
typedef struct {
    uint8_t bytes[QELTVAPI_SATL_REC_SIZE];
} QELTVAPI_SATL_REC_T;

/** One network. */
typedef struct {
    uint8_t bytes[QELTVAPI_NWL_REC_SIZE];
} QELTVAPI_NWL_REC_T;

/** The BISS key of one service. */
typedef struct {
    uint8_t bytes[QELTVAPI_BSL_REC_SIZE];
} QELTVAPI_BSL_REC_T;

/** What selects BISS keys. */
typedef struct {
    uint8_t bytes[QELTVAPI_BSL_HEADER_SIZE];
} QELTVAPI_BSL_HEADER_T;

/** What a query looks for. */
typedef struct {
    uint8_t bytes[QELTVAPI_QUERY_INFO_SIZE];
} QELTVAPI_QUERY_INFO_T;

/** The block of a_qeltvapi_channellist_interface(). */
typedef struct {
    uint8_t bytes[QELTVAPI_INTERFACE_BLOCK_SIZE];
} QELTVAPI_INTERFACE_BLOCK_T;

#endif /* HW_QELTVAPI_CHANNEL_RECORDS_H */
