/**
 * Entry points of an earlier picture-in-picture. They make no transaction; hw_qeltvapi_multiview.h
 * controls two pictures.
 */
#ifndef HW_QELTVAPI_POP_H
#define HW_QELTVAPI_POP_H

#include "qeltvapi_base.h"

QELTVAPI_BEGIN_DECLS

/**
 * Does nothing; kept for programs that link against it.
 *
 * @return 0
 */
int a_qeltvapi_pop_register_callback(void);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_pop_enter_next_tv_mode(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_pop_swap_win(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_pop_switch_audio_focus(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_pop_goto_next_win_size(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_pop_goto_next_win_pos(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_pop_get_focus_win_info(QELTVAPI_ANY_ARGS);

/**
 * Does nothing and takes any arguments; kept for programs that call it.
 *
 * @return 0
 */
int a_qeltvapi_pop_get_focus_id(QELTVAPI_ANY_ARGS);

QELTVAPI_END_DECLS

#endif /* HW_QELTVAPI_POP_H */
