/**
 * The rating lock: what is blocked in each broadcast standard, the downloaded open V-chip table,
 * and ratings as display texts.
 *
 * Every function but a_qeltvapi_rating_op_vchip_reg_callback() asks IQelTvApiRating. Its result is
 * -1 when the service is not there, which is logged while debugging, and 0 after a lost reply;
 * outputs are untouched in both cases. A null pointer gives -1 and is logged whatever the debug
 * switch, except in a_qeltvapi_rating_get_crnt_rating_info(), which needs one that is not null.
 *
 * A setting is 8 bits wide and its meaning (the rating level of a standard) is the service's; the
 * setters send the low 8 bits of their argument.
 */
#ifndef HW_QELTVAPI_RATING_H
#define HW_QELTVAPI_RATING_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_rating_map.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Bytes of the open V-chip table. */
#define QELTVAPI_RATING_OPEN_VCHIP_TABLE_SIZE 64

/** Blocking of the US television ratings: flags of one byte each. */
typedef struct {
    uint8_t block[16];
    uint8_t extra[4];
} QELTVAPI_RATING_US_TV_SETTING_T;

/** Open V-chip settings. */
typedef struct {
    uint8_t first; /**< with the next two, selects the settings */
    uint8_t second;
    uint8_t third;
    uint8_t block[255];
} QELTVAPI_RATING_OPEN_VCHIP_SETTING_T;

/** One node of an ATSC rating list. */
typedef struct QELTVAPI_ATSC_RATING_LIST_T {
    uint16_t id;
    uint16_t count;                                 /**< number of values */
    const char* name;                               /**< terminated */
    const uint8_t* values;                          /**< may be null: then none are sent */
    const struct QELTVAPI_ATSC_RATING_LIST_T* next; /**< null ends the list */
} QELTVAPI_ATSC_RATING_LIST_T;

/**
 * Sets the function that is told of open V-chip events, in place of the one before. Asks no
 * service, and does not ask for the callback object to be registered either.
 *
 * @param fn called on a thread of the HIDL runtime; null for none
 * @return 0
 */
int a_qeltvapi_rating_op_vchip_reg_callback(qeltvapi_rating_op_vchip_callback_cb_t fn);

/**
 * Reads the blocking of the US television ratings. Asks method 0.
 *
 * @param out [out] the 20 flags as the service sends them
 * @return the service's code
 */
int a_qeltvapi_rating_get_us_tv_setting_info(QELTVAPI_RATING_US_TV_SETTING_T* out);

/**
 * Sets the blocking of the US television ratings. Asks method 1.
 *
 * @param in the 20 flags, each sent as 1 when not 0
 * @return the service's code
 */
int a_qeltvapi_rating_set_us_tv_setting_info(const QELTVAPI_RATING_US_TV_SETTING_T* in);

/**
 * Reads the limit of the US movie ratings. Asks method 2.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_us_movie_setting_info(uint8_t* val);

/**
 * Sets the limit of the US movie ratings. Asks method 3.
 *
 * @param val the setting
 * @return the service's code
 */
int a_qeltvapi_rating_set_us_movie_setting_info(int val);

/**
 * Reads the limit of the Canadian English ratings. Asks method 4.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_can_eng_setting_info(uint8_t* val);

/**
 * Sets the limit of the Canadian English ratings. Asks method 5.
 *
 * @param val the setting
 * @return the service's code
 */
int a_qeltvapi_rating_set_can_eng_setting_info(int val);

/**
 * Reads the limit of the Canadian French ratings. Asks method 6.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_can_fre_setting_info(uint8_t* val);

/**
 * Sets the limit of the Canadian French ratings. Asks method 7.
 *
 * @param val the setting
 * @return the service's code
 */
int a_qeltvapi_rating_set_can_fre_setting_info(int val);

/**
 * Reads whether programmes without a rating are blocked. Asks method 8.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_block_unrated(uint8_t* val);

/**
 * Sets whether programmes without a rating are blocked. Asks method 9.
 *
 * @param on 0 for no, any other value for yes
 * @return the service's code
 */
int a_qeltvapi_rating_set_block_unrated(int on);

/**
 * Reads the master switch of the rating lock. Asks method 10.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_enable(uint8_t* val);

/**
 * Reads how the US television ratings are grouped by child. Asks method 11.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_us_tv_group_by_child(uint8_t* val);

/**
 * Sets the master switch of the rating lock. Asks method 12.
 *
 * @param val the setting
 * @return the service's code
 */
int a_qeltvapi_rating_set_enable(int val);

/**
 * Reads whether an open V-chip table is there. Asks method 13.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_op_vchip_avail(uint8_t* val);

/**
 * Reads the open V-chip table. Asks method 14. A table of another size is logged whatever the
 * debug switch and not stored; the result is the service's code all the same.
 *
 * @param out [out] the 64 bytes of the table
 * @return the service's code
 */
int a_qeltvapi_rating_get_op_vchip_info(void* out);

/**
 * Reads the open V-chip settings that the first three bytes of the record select. Asks method
 * 15. Logs the first two bytes before and after, whatever the debug switch.
 *
 * @param io [in, out] the three bytes; then the whole record
 * @return the service's code
 */
int a_qeltvapi_rating_get_op_vchip_setting_info(QELTVAPI_RATING_OPEN_VCHIP_SETTING_T* io);

/**
 * Stores open V-chip settings. Asks method 16.
 *
 * @param in the whole record
 * @return the service's code
 */
int a_qeltvapi_rating_set_op_vchip_setting_info(const QELTVAPI_RATING_OPEN_VCHIP_SETTING_T* in);

/**
 * Reads the ISDB content limit. Asks method 17.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_isdb_content_setting_info(uint8_t* val);

/**
 * Sets the ISDB content limit. Asks method 18.
 *
 * @param val the setting
 * @return the service's code
 */
int a_qeltvapi_rating_set_isdb_content_setting_info(int val);

/**
 * Reads the ISDB age limit. Asks method 19.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_isdb_age_setting_info(uint8_t* val);

/**
 * Sets the ISDB age limit. Asks method 20.
 *
 * @param val the setting
 * @return the service's code
 */
int a_qeltvapi_rating_set_isdb_age_setting_info(int val);

/**
 * Reads the DVB age limit. Asks method 21.
 *
 * @param val [out] the setting
 * @return the service's code
 */
int a_qeltvapi_rating_get_dvb_age_setting_info(uint8_t* val);

/**
 * Sets the DVB age limit. Asks method 22.
 *
 * @param val the setting
 * @return the service's code
 */
int a_qeltvapi_rating_set_dvb_age_setting_info(int val);

/**
 * Turns an ATSC rating list into display texts. Asks method 23.
 *
 * @param list first node of the list; an empty list is refused like any null pointer
 * @param out  [out] the texts; to be cleared before
 * @return the service's code
 */
int a_qeltvapi_rating_convert_rating_info(const QELTVAPI_ATSC_RATING_LIST_T* list,
                                          QELTVAPI_RATING_MAP_T* out);

/**
 * Switches the storing of received ATSC ratings. Asks method 24.
 *
 * @param on 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_rating_atsc_storage(int on);

/**
 * Reads the rating of the current programme as display texts. Asks method 25.
 *
 * @param out [out] the texts; to be cleared before; not tested for null
 * @return the service's code
 */
int a_qeltvapi_rating_get_crnt_rating_info(QELTVAPI_RATING_MAP_T* out);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_RATING_H */
