/**
 * The records of the channel data.
 *
 * They cross byte for byte: the application and the service agree on what is in them. The fields
 * that the reference television uses are in layouts/channel_records.h; a pointer to one of its
 * records is cast to the record here.
 */
#ifndef HW_QELTVAPI_CHANNEL_RECORDS_H
#define HW_QELTVAPI_CHANNEL_RECORDS_H

#include <stdint.h>

#define QELTVAPI_SVL_REC_SIZE 396           /**< size of the record in bytes */
#define QELTVAPI_TSL_REC_SIZE 628           /**< size of the record in bytes */
#define QELTVAPI_FAVORITE_LIST_REC_SIZE 820 /**< size of the record in bytes */
#define QELTVAPI_SATL_REC_SIZE 276          /**< size of the record in bytes */
#define QELTVAPI_NWL_REC_SIZE 304           /**< size of the record in bytes */
#define QELTVAPI_BSL_REC_SIZE 32            /**< size of the record in bytes */
#define QELTVAPI_BSL_HEADER_SIZE 16         /**< size of the record in bytes */
#define QELTVAPI_QUERY_INFO_SIZE 12         /**< size of the record in bytes */
#define QELTVAPI_INTERFACE_BLOCK_SIZE 8     /**< size of the record in bytes */

/** One channel: its ids, names and flags; reference television: a channel_record_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_SVL_REC_SIZE]; /**< the record */
} QELTVAPI_SVL_REC_T;

/** One transport stream, the multiplex that carries channels; reference television: a
 * multiplex_record_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_TSL_REC_SIZE]; /**< the record */
} QELTVAPI_TSL_REC_T;

/** A favourite list; reference television: a favourite_list_record_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_FAVORITE_LIST_REC_SIZE]; /**< the record */
} QELTVAPI_FAVORITE_LIST_REC_T;

/** One satellite; reference television: a satellite_record_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_SATL_REC_SIZE]; /**< the record */
} QELTVAPI_SATL_REC_T;

/** One network; reference television: a network_record_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_NWL_REC_SIZE]; /**< the record */
} QELTVAPI_NWL_REC_T;

/** The BISS key of one service; reference television: a biss_record_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_BSL_REC_SIZE]; /**< the record */
} QELTVAPI_BSL_REC_T;

/** The selection of BISS keys: what a key is for; reference television: a biss_header_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_BSL_HEADER_SIZE]; /**< the record */
} QELTVAPI_BSL_HEADER_T;

/** A query for channels; reference television: a channel_query_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_QUERY_INFO_SIZE]; /**< the record */
} QELTVAPI_QUERY_INFO_T;

/** The block of a_qeltvapi_channellist_interface(); reference television: a channel_request_t. */
typedef struct {
    uint8_t bytes[QELTVAPI_INTERFACE_BLOCK_SIZE]; /**< the record */
} QELTVAPI_INTERFACE_BLOCK_T;

#endif /* HW_QELTVAPI_CHANNEL_RECORDS_H */
