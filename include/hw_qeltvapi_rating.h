/**
 * The rating lock: what is blocked in each broadcast standard, the downloaded open V-chip table,
 * and ratings as display texts.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service, which is
 * logged while debugging; 0 after a transport failure. A null pointer gives -1 and is logged
 * regardless of the debug switch, except in a_qeltvapi_rating_get_crnt_rating_info(), whose pointer
 * must not be null.
 *
 * A setting has 8 bits, the setters send the low 8 bits of their argument, and its meaning (the
 * rating level of a standard) is service-defined. Reference television: a limit of 0 blocks
 * nothing, others block their level and those above.
 */
#ifndef HW_QELTVAPI_RATING_H
#define HW_QELTVAPI_RATING_H

#include "hw_qeltvapi_callback_types.h"
#include "hw_qeltvapi_rating_map.h"
#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Bytes of the open V-chip table. */
#define QELTVAPI_RATING_OPEN_VCHIP_TABLE_SIZE 64

/**
 * Blocking of the US television ratings: flags of one byte each. Reference television: in the order
 * of QELTV_US_TV_FLAG.
 */
typedef struct {
    uint8_t block[16]; /**< the first 16 flags, 1 blocks */
    uint8_t extra[4];  /**< the further four flags */
} QELTVAPI_RATING_US_TV_SETTING_T;

/** Open V-chip settings, selected by the first three bytes. */
typedef struct {
    /** service-defined; reference television: number of the rating region */
    uint8_t first;
    uint8_t second; /**< service-defined; reference television: the dimension, from 0 */
    /** service-defined; reference television: number of levels of the dimension */
    uint8_t third;
    /** service-defined; reference television: a byte for each level, 1 where it is blocked */
    uint8_t block[255];
} QELTVAPI_RATING_OPEN_VCHIP_SETTING_T;

/** One node of an ATSC rating list. */
typedef struct QELTVAPI_ATSC_RATING_LIST_T {
    uint16_t id;                                    /**< id of the rating region */
    uint16_t count;                                 /**< number of values */
    const char* name;                               /**< name, a terminated text */
    const uint8_t* values;                          /**< may be null: then none are sent */
    const struct QELTVAPI_ATSC_RATING_LIST_T* next; /**< null ends the list */
} QELTVAPI_ATSC_RATING_LIST_T;

/**
 * Registers the callback for open V-chip events, replacing the previous one. It does not register
 * the callback object with the service; a_qeltvapi_channellist_register_callback(), for example,
 * requests that (all: hw_qeltvapi_callback_types.h).
 *
 * @param fn the callback; null to remove it
 * @return 0
 */
int a_qeltvapi_rating_op_vchip_reg_callback(qeltvapi_rating_op_vchip_callback_cb_t fn);

/**
 * Reads the blocking of the US television ratings.
 *
 * @param out [out] the 20 flags as the service sends them; reference television: in the order of
 *            QELTV_US_TV_FLAG
 * @return the service's code
 */
int a_qeltvapi_rating_get_us_tv_setting_info(QELTVAPI_RATING_US_TV_SETTING_T* out);

/**
 * Sets the blocking of the US television ratings.
 *
 * @param in the 20 flags, each sent as 1 unless it is 0; reference television: in the order of
 *           QELTV_US_TV_FLAG
 * @return the service's code
 */
int a_qeltvapi_rating_set_us_tv_setting_info(const QELTVAPI_RATING_US_TV_SETTING_T* in);

/**
 * Reads the limit of the US movie ratings.
 *
 * @param val [out] the setting; reference television: a QELTV_US_MOVIE_LIMIT
 * @return the service's code
 */
int a_qeltvapi_rating_get_us_movie_setting_info(uint8_t* val);

/**
 * Sets the limit of the US movie ratings.
 *
 * @param val the setting; reference television: a QELTV_US_MOVIE_LIMIT
 * @return the service's code
 */
int a_qeltvapi_rating_set_us_movie_setting_info(int val);

/**
 * Reads the limit of the Canadian English ratings.
 *
 * @param val [out] the setting; reference television: a QELTV_CANADA_ENGLISH_LIMIT
 * @return the service's code
 */
int a_qeltvapi_rating_get_can_eng_setting_info(uint8_t* val);

/**
 * Sets the limit of the Canadian English ratings.
 *
 * @param val the setting; reference television: a QELTV_CANADA_ENGLISH_LIMIT
 * @return the service's code
 */
int a_qeltvapi_rating_set_can_eng_setting_info(int val);

/**
 * Reads the limit of the Canadian French ratings.
 *
 * @param val [out] the setting; reference television: a QELTV_CANADA_FRENCH_LIMIT
 * @return the service's code
 */
int a_qeltvapi_rating_get_can_fre_setting_info(uint8_t* val);

/**
 * Sets the limit of the Canadian French ratings.
 *
 * @param val the setting; reference television: a QELTV_CANADA_FRENCH_LIMIT
 * @return the service's code
 */
int a_qeltvapi_rating_set_can_fre_setting_info(int val);

/**
 * Reports whether programmes without a rating are blocked.
 *
 * @param val [out] the setting; reference television: 1 if they are, else 0
 * @return the service's code
 */
int a_qeltvapi_rating_get_block_unrated(uint8_t* val);

/**
 * Sets whether programmes without a rating are blocked.
 *
 * @param on 0 for no, any other value for yes
 * @return the service's code
 */
int a_qeltvapi_rating_set_block_unrated(int on);

/**
 * Reads the master switch of the rating lock.
 *
 * @param val [out] the setting; reference television: 1 on, 0 off
 * @return the service's code
 */
int a_qeltvapi_rating_get_enable(uint8_t* val);

/**
 * Reads how the US television ratings are grouped by child.
 *
 * @param val [out] the setting; reference television: a QELTV_CHILD_GROUP
 * @return the service's code
 */
int a_qeltvapi_rating_get_us_tv_group_by_child(uint8_t* val);

/**
 * Sets the master switch of the rating lock.
 *
 * @param val the setting; reference television: 1 on, 0 off
 * @return the service's code
 */
int a_qeltvapi_rating_set_enable(int val);

/**
 * Reports whether an open V-chip table is available.
 *
 * @param val [out] the setting; reference television: 1 if it is, else 0
 * @return the service's code
 */
int a_qeltvapi_rating_get_op_vchip_avail(uint8_t* val);

/**
 * Reads the open V-chip table. A table of another size is logged regardless of the debug switch and
 * not stored; the result is the service's code then, too.
 *
 * @param out [out] the table, QELTVAPI_RATING_OPEN_VCHIP_TABLE_SIZE bytes; reference television: a
 *            QELTV_OPEN_VCHIP_TABLE_T
 * @return the service's code
 */
int a_qeltvapi_rating_get_op_vchip_info(void* out);

/**
 * Reads the open V-chip settings that the first three bytes of the record select. It logs the first
 * two bytes before and after, regardless of the debug switch.
 *
 * @param io [in,out] the three bytes; then the whole record; reference television: region,
 *           dimension, number of levels; then a byte for each level, 1 where it is blocked
 * @return the service's code
 */
int a_qeltvapi_rating_get_op_vchip_setting_info(QELTVAPI_RATING_OPEN_VCHIP_SETTING_T* io);

/**
 * Stores open V-chip settings.
 *
 * @param in the whole record; reference television: as of
 *           a_qeltvapi_rating_get_op_vchip_setting_info()
 * @return the service's code
 */
int a_qeltvapi_rating_set_op_vchip_setting_info(const QELTVAPI_RATING_OPEN_VCHIP_SETTING_T* in);

/**
 * Reads the ISDB content limit.
 *
 * @param val [out] the setting; reference television: bits in QELTV_ISDB_CONTENT_MASK
 * @return the service's code
 */
int a_qeltvapi_rating_get_isdb_content_setting_info(uint8_t* val);

/**
 * Sets the ISDB content limit.
 *
 * @param val the setting; reference television: bits in QELTV_ISDB_CONTENT_MASK
 * @return the service's code
 */
int a_qeltvapi_rating_set_isdb_content_setting_info(int val);

/**
 * Reads the ISDB age limit.
 *
 * @param val [out] the setting; reference television: age in years, 4 to 18, 0 for none
 * @return the service's code
 */
int a_qeltvapi_rating_get_isdb_age_setting_info(uint8_t* val);

/**
 * Sets the ISDB age limit.
 *
 * @param val the setting; reference television: age in years, 4 to 18, 0 for none
 * @return the service's code
 */
int a_qeltvapi_rating_set_isdb_age_setting_info(int val);

/**
 * Reads the DVB age limit.
 *
 * @param val [out] the setting; reference television: age in years, 4 to 18, 0 for none
 * @return the service's code
 */
int a_qeltvapi_rating_get_dvb_age_setting_info(uint8_t* val);

/**
 * Sets the DVB age limit.
 *
 * @param val the setting; reference television: age in years, 4 to 18, 0 for none
 * @return the service's code
 */
int a_qeltvapi_rating_set_dvb_age_setting_info(int val);

/**
 * Converts an ATSC rating list into display texts.
 *
 * @param list first node of the list; an empty list is refused like a null pointer
 * @param out  [out] the texts: clear the record before
 * @return the service's code
 */
int a_qeltvapi_rating_convert_rating_info(const QELTVAPI_ATSC_RATING_LIST_T* list,
                                          QELTVAPI_RATING_MAP_T* out);

/**
 * Switches the storage of received ATSC ratings on or off.
 *
 * @param on 0 for off, any other value for on; reference television: on receives the open V-chip
 *           table, off removes it with its settings
 * @return the service's code
 */
int a_qeltvapi_rating_atsc_storage(int on);

/**
 * Reads the rating of the current programme as display texts.
 *
 * @param out [out] the texts: clear the record before; not checked for null
 * @return the service's code
 */
int a_qeltvapi_rating_get_crnt_rating_info(QELTVAPI_RATING_MAP_T* out);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_RATING_H */
