/**
 * Two simultaneous pictures: which has the tuner and the audio focus, the TV mode, starting and
 * stopping the main and the sub video, and the video state of a path.
 *
 * Every function asks IQelTvApiMultiview and returns -1 when the service is not there, with one
 * line in the log whatever the debug switch, and 0 after a lost reply, which cannot be told from
 * success. a_qeltvapi_multiview_getChgSource() returns 0 in both cases. No pointer is checked but a
 * text, of which null counts as "". Modes, focus, resources and states are defined by the service.
 */
#ifndef HW_QELTVAPI_MULTIVIEW_H
#define HW_QELTVAPI_MULTIVIEW_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/** Region of a picture, 16 bytes that the service defines. */
typedef struct {
    uint32_t x;
    uint32_t y;
    uint32_t w;
    uint32_t h;
} QELTVAPI_MULTIVIEW_REGION_T;

/**
 * Reads which picture has the tuner. Asks method 0.
 *
 * @return the focus, or the service's code
 */
int a_qeltvapi_multiview_getPOPTunerFocus(void);

/**
 * Gives a source the audio focus. Asks method 1.
 *
 * @param source source id
 * @return the service's code
 */
int a_qeltvapi_multiview_setAudioFocusbySourceid(int32_t source);

/**
 * Gives a path the audio focus. Asks method 2.
 *
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_multiview_setAudioFocus(const char* path);

/**
 * Reads which picture has the audio focus. Asks method 3.
 *
 * @return the focus, or the service's code
 */
int a_qeltvapi_multiview_getAudioFocus(void);

/**
 * Sets the TV mode. Asks method 4.
 *
 * @param mode the mode
 * @return the service's code
 */
int a_qeltvapi_multiview_setNewTvMode(int32_t mode);

/**
 * Tells whether a source is available on a path. Asks method 5.
 *
 * @param source source id
 * @param path   video path
 * @param val    [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_multiview_is_source_available_bysourceidandpath(int32_t source, const char* path,
                                                               uint8_t* val);

/**
 * Starts the main video. Asks method 6.
 *
 * @param p1 passed to the service unchanged
 * @param r  where the picture goes
 * @return the service's code
 */
int a_qeltvapi_multiview_startMainVideo(int32_t p1, const QELTVAPI_MULTIVIEW_REGION_T* r);

/**
 * Starts the sub video. Asks method 7.
 *
 * @param p1 passed to the service unchanged
 * @param r  where the picture goes
 * @return the service's code
 */
int a_qeltvapi_multiview_startSubVideo(int32_t p1, const QELTVAPI_MULTIVIEW_REGION_T* r);

/**
 * Stops the main video. Asks method 8.
 *
 * @return the service's code
 */
int a_qeltvapi_multiview_stopMainVideo(void);

/**
 * Stops the sub video. Asks method 9.
 *
 * @return the service's code
 */
int a_qeltvapi_multiview_stopSubVideo(void);

/**
 * Starts video without a video path of its own. Asks method 10.
 *
 * @param p1   passed to the service unchanged
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_multiview_startVideoWithoutVideoPath(int32_t p1, const char* path);

/**
 * Takes back a_qeltvapi_multiview_startVideoWithoutVideoPath(). Asks method 11.
 *
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_multiview_stopVideoWithoutVideoPath(const char* path);

/**
 * Reads the video resource of a path. Asks method 12.
 *
 * @param path video path
 * @return the resource, or the service's code
 */
int a_qeltvapi_multiview_getVideoResource(const char* path);

/**
 * Notes that the source is being changed. Asks method 13.
 *
 * @param on not 0 while it is
 * @return the service's code
 */
int a_qeltvapi_multiview_setChgSource(int on);

/**
 * Tells whether the source is being changed. Asks method 14.
 *
 * @return the service's value; 0 without an answer
 */
uint8_t a_qeltvapi_multiview_getChgSource(void);

/**
 * Reads the video state of a path. Asks method 15.
 *
 * @param path video path
 * @return the state, or the service's code
 */
int a_qeltvapi_multiview_get_video_state(const char* path);

/**
 * Sets the video state of a path. Asks method 16.
 *
 * @param path  video path
 * @param state truth value, not 0 is true
 * @return the service's code
 */
int a_qeltvapi_multiview_set_video_state(const char* path, int state);

/**
 * Moves the focus to a path and changes nothing else. Asks method 17.
 *
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_multiview_only_chg_focus(const char* path);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_MULTIVIEW_H */
