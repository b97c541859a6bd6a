/**
 * One record of the service list, under the middleware's older name.
 *
 * The function asks IQelTvApiChannelList and returns 0 when the service is not there, with a line
 * in the log while debugging, and -1 after a lost reply. Unlike the reads of
 * hw_qeltvapi_channellist.h it stores a record of any size.
 */
#ifndef HW_SVL_H
#define HW_SVL_H

#include "hw_qeltvapi_channel_records.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Reads a service-list record by record id. Asks method 90.
 *
 * @param list_id service-list id
 * @param rec_id  record id
 * @param rec     [out] the record, as many bytes as the service sends
 * @param word    [out] word of the answer
 * @return the service's code
 */
int c_svl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec, uint32_t* word);

QELTVAPI_END_DECLS

#endif /* HW_SVL_H */
