/**
 * Two simultaneous pictures: tuner and audio focus, the TV mode, starting and stopping the main and
 * the sub video, and the video state of a path.
 *
 * Results: the service's code, unless a function says otherwise; -1 without a service, with one
 * line in the log regardless of the debug switch; 0 after a transport failure, which cannot be
 * distinguished from success. a_qeltvapi_multiview_getChgSource() returns 0 in both cases.
 *
 * Pointers are not checked for null, except texts, of which null counts as "". Modes, focus,
 * resources and states are service-defined. Reference television: paths are "main" (also "") and
 * "sub", or the numbers 0 and 1; sources are inputs, 0 for TV to 8.
 */
#ifndef HW_QELTVAPI_MULTIVIEW_H
#define HW_QELTVAPI_MULTIVIEW_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Region of a picture, 16 bytes; the unit is service-defined. Reference television: 1/10000 of the
 * screen's width or height, QELTV_REGION_FULL for all of it; all 0 leave the region as it is.
 */
typedef struct {
    uint32_t x; /**< left edge */
    uint32_t y; /**< upper edge */
    uint32_t w; /**< width */
    uint32_t h; /**< height */
} QELTVAPI_MULTIVIEW_REGION_T;

/**
 * Reads which picture has the tuner.
 *
 * @return the focus (reference television: path 0 or 1), or the service's code
 */
int a_qeltvapi_multiview_getPOPTunerFocus(void);

/**
 * Sets the audio focus to a source.
 *
 * @param source source id; reference television: one that a path shows
 * @return the service's code
 */
int a_qeltvapi_multiview_setAudioFocusbySourceid(int32_t source);

/**
 * Sets the audio focus to a path.
 *
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_multiview_setAudioFocus(const char* path);

/**
 * Reads which picture has the audio focus.
 *
 * @return the focus (reference television: path 0 or 1), or the service's code
 */
int a_qeltvapi_multiview_getAudioFocus(void);

/**
 * Sets the TV mode.
 *
 * @param mode service-defined; reference television: a QELTV_TV_MODE
 * @return the service's code
 */
int a_qeltvapi_multiview_setNewTvMode(int32_t mode);

/**
 * Reports whether a source is available on a path.
 *
 * @param source source id
 * @param path   video path
 * @param val    [out] 0 or 1
 * @return the service's code
 */
int a_qeltvapi_multiview_is_source_available_bysourceidandpath(int32_t source, const char* path,
                                                               uint8_t* val);

/**
 * Starts the main video.
 *
 * @param p1 service-defined; reference television: source id
 * @param r  the picture's region
 * @return the service's code
 */
int a_qeltvapi_multiview_startMainVideo(int32_t p1, const QELTVAPI_MULTIVIEW_REGION_T* r);

/**
 * Starts the sub video.
 *
 * @param p1 service-defined; reference television: source id
 * @param r  the picture's region
 * @return the service's code
 */
int a_qeltvapi_multiview_startSubVideo(int32_t p1, const QELTVAPI_MULTIVIEW_REGION_T* r);

/**
 * Stops the main video.
 *
 * @return the service's code
 */
int a_qeltvapi_multiview_stopMainVideo(void);

/**
 * Stops the sub video.
 *
 * @return the service's code
 */
int a_qeltvapi_multiview_stopSubVideo(void);

/**
 * Starts video without a video path of its own.
 *
 * @param p1   service-defined; reference television: source id
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_multiview_startVideoWithoutVideoPath(int32_t p1, const char* path);

/**
 * Stops the video of a_qeltvapi_multiview_startVideoWithoutVideoPath().
 *
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_multiview_stopVideoWithoutVideoPath(const char* path);

/**
 * Reads the video resource of a path.
 *
 * @param path video path
 * @return the resource (reference television: a QELTV_VIDEO_RESOURCE), or the service's code
 */
int a_qeltvapi_multiview_getVideoResource(const char* path);

/**
 * Sets whether the source is being changed.
 *
 * @param on 0 if not, any other value if it is
 * @return the service's code
 */
int a_qeltvapi_multiview_setChgSource(int on);

/**
 * Reports whether the source is being changed.
 *
 * @return the service's value; 0 without a service and after a transport failure
 */
uint8_t a_qeltvapi_multiview_getChgSource(void);

/**
 * Reads the video state of a path.
 *
 * @param path video path
 * @return the state (reference television: 1 on, 0 off), or the service's code
 */
int a_qeltvapi_multiview_get_video_state(const char* path);

/**
 * Sets the video state of a path.
 *
 * @param path  video path
 * @param state 0 for off, any other value for on
 * @return the service's code
 */
int a_qeltvapi_multiview_set_video_state(const char* path, int state);

/**
 * Sets the audio focus to a path and changes nothing else.
 *
 * @param path video path
 * @return the service's code
 */
int a_qeltvapi_multiview_only_chg_focus(const char* path);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_MULTIVIEW_H */
