/**
 * One record of the transport-stream list, under the middleware's older name.
 *
 * Results: the service's code; 0 without a service, with a line in the log while debugging; -1
 * after a transport failure.
 *
 * Unlike the reads of hw_qeltvapi_channellist.h it stores a record of any size.
 */
#ifndef HW_TSL_H
#define HW_TSL_H

#include "hw_qeltvapi_channel_records.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Reads a transport-stream record by record id.
 *
 * @param list_id transport-stream-list id; reference television: CHANNEL_LIST_
 * @param rec_id  record id
 * @param rec     [out] the record, as many bytes as the service sends; reference television: a
 *                multiplex_record_t
 * @param word    [out] service-defined; reference television: version of the list
 * @return the service's code
 */
int c_tsl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec, uint32_t* word);

QELTVAPI_END_DECLS

#endif /* HW_TSL_H */
