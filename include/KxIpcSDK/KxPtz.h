/**
 * @file
 * Pan, tilt, zoom and lens of a camera: movement, presets, lights, the serial port of a PTZ head, and the tracking of
 * moving objects.
 *
 * What the top of KxNetwork.h says of all settings calls holds here too, with these differences:
 * - A get of a single number returns 0 also when the camera does not tell the number, be its answer empty: the caller's
 *   value is then untouched. It returns -1 when the request fails.
 * - How much of an answer is read differs; where a call says nothing, it is 255 bytes.
 * - What a command makes of the camera is not told: 0 means that the camera answered.
 */
#ifndef KXIPCSDK_KXPTZ_H
#define KXIPCSDK_KXPTZ_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * What Kx_Ipc_PTZControl() can be told to do. Movements go on until the camera is stopped. Codes that are not listed:
 * 49 and 102 clear a preset, 54 starts the patrol, and every other one stops the camera, negative ones included.
 */
enum KxPtzCommand
{
    KX_PTZ_UP = 0,               /**< tilt up */
    KX_PTZ_DOWN = 1,             /**< tilt down */
    KX_PTZ_LEFT = 2,             /**< pan to the left */
    KX_PTZ_RIGHT = 3,            /**< pan to the right */
    KX_PTZ_UP_LEFT = 4,          /**< both at once */
    KX_PTZ_UP_RIGHT = 5,         /**< both at once */
    KX_PTZ_DOWN_LEFT = 6,        /**< both at once */
    KX_PTZ_DOWN_RIGHT = 7,       /**< both at once */
    KX_PTZ_AUTO_SCAN = 8,        /**< pan to and fro */
    KX_PTZ_STOP = 9,             /**< end any movement */
    KX_PTZ_ZOOM_IN = 10,         /**< nearer */
    KX_PTZ_ZOOM_OUT = 11,        /**< wider */
    KX_PTZ_FOCUS_NEAR = 12,      /**< focus on what is nearer; no speed is sent */
    KX_PTZ_FOCUS_FAR = 13,       /**< focus on what is farther; no speed is sent */
    KX_PTZ_IRIS_OPEN = 14,       /**< brighter */
    KX_PTZ_IRIS_CLOSE = 15,      /**< darker */
    KX_PTZ_LIGHT_OFF = 16,       /**< no speed is sent */
    KX_PTZ_LIGHT_ON = 17,        /**< no speed is sent */
    KX_PTZ_WIPER_OFF = 18,       /**< end wiping */
    KX_PTZ_WIPER_ON = 19,        /**< wipe the window */
    KX_PTZ_AUTO_FOCUS_ONCE = 20, /**< focus by itself, once */
    KX_PTZ_SET_PRESET = 21,      /**< keep where the camera looks under a number and a name */
    KX_PTZ_GO_TO_PRESET = 22,    /**< look where a preset says */
    KX_PTZ_CLEAR_PRESET = 23,    /**< forget a preset */
    KX_PTZ_PATROL = 24,          /**< go from preset to preset; no speed is sent */
    KX_PTZ_RESET_FOCUS = 50,     /**< back to where the focus begins */
    KX_PTZ_AUTO_FOCUS = 51,      /**< focus by itself */
    KX_PTZ_IRIS_MODE_1 = 52,     /**< iris mode code 1 */
    KX_PTZ_IRIS_MODE_0 = 53,     /**< iris mode code 0 */
    KX_PTZ_SPEED_ONLY = 55       /**< nothing but the speed is sent */
};

/** The serial port to a PTZ head. */
typedef struct PtzInfo
{
    uint8_t ptzprotocol;  /**< protocol code; a set sends 1 for any but 0 */
    uint64_t ptzbaudrate; /**< bits per second, see Kx_Ipc_SetPTZ() */
} PtzInfo;

/** A time of day. */
typedef struct TrackTime
{
    int hour;   /**< 0 to 23 */
    int minute; /**< 0 to 59 */
    int second; /**< neither sent nor filled */
} TrackTime;

/** When a camera tracks on a day of the week. The last of the four periods is neither sent nor filled. */
typedef struct TrackDaySchedule
{
    uint8_t enable; /**< 1: a period begins or ends at another time than 00:00; a set sends no period of a day
                             with 0 */
    TrackTime start[4]; /**< the periods' beginnings */
    TrackTime end[4];   /**< the periods' ends */
} TrackDaySchedule;

/** Automatic tracking of moving objects. */
typedef struct PtzAutoTrackInfo
{
    uint8_t auto_tracking_enable;      /**< 1: automatic tracking on */
    uint8_t auto_tracking_show;        /**< 1: the tracking frame is shown */
    uint8_t auto_tracking_sensitivity; /**< sensitivity code */
    int auto_tracking_max_time;        /**< longest tracking time */
    uint8_t manual_tracking;           /**< state of manual tracking; read only */
    int auto_tracking_zoom_mode;       /**< code of the zoom mode while tracking */
    int auto_tracking_zoom_number;     /**< zoom ratio while tracking */
    TrackDaySchedule schedule[7];      /**< a day of the week each (`auto_tracking_schedule_0` and so on) */
} PtzAutoTrackInfo;

/** An object that the camera tracks, in pixels of the picture that AutoTrackPointInfo tells. */
typedef struct TrackPoint
{
    int id;     /**< number that the camera gave it */
    int type;   /**< code of what it is */
    int startX; /**< beginning, from the left */
    int startY; /**< beginning, from the top */
    int stopX;  /**< end, from the left */
    int stopY;  /**< end, from the top */
} TrackPoint;

/** Room for track points. */
enum
{
    KX_MOST_TRACK_POINTS = 2048 /**< more than the longest answer that is read can tell of */
};

#ifdef __GNUC__ /* standard C++ has no array without a size */
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#endif
/**
 * The objects that the camera tracks. The caller makes the room for the points behind the record: sizeof
 * (AutoTrackPointInfo) + #KX_MOST_TRACK_POINTS * sizeof(TrackPoint) bytes are enough for any answer.
 */
typedef struct AutoTrackPointInfo
{
    int track_point_num; /**< how many points the camera tells of */
    int width;           /**< of the picture, in pixels (`media_profile_resolution_width`) */
    int height;          /**< of the picture, in pixels (`media_profile_resolution_height`) */
    TrackPoint points[]; /**< as many as `track_point_num` says */
} AutoTrackPointInfo;
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

/** The white-light LED's parameters: codes of the camera. */
typedef struct WhiteLedParam
{
    int white_led_alarm;  /**< alarm code */
    int white_led_number; /**< number code */
    int white_led_manual; /**< manual code */
} WhiteLedParam;

/** Whether the camera moves: status codes of the mechanics and of the fisheye views. */
typedef struct PtzRunStatus
{
    int ptz_run_status;        /**< the mechanics */
    int fish_0_ptz_run_status; /**< fisheye view 0 */
    int fish_1_ptz_run_status; /**< fisheye view 1 */
    int fish_2_ptz_run_status; /**< fisheye view 2 */
    int fish_3_ptz_run_status; /**< fisheye view 3 */
    int fish_4_ptz_run_status; /**< fisheye view 4 */
} PtzRunStatus;

/**
 * Moves the camera, its lens, its lights and its wiper. #KX_PTZ_IRIS_OPEN and #KX_PTZ_IRIS_CLOSE ask the camera's model
 * first.
 *
 * @param     userId   the session
 * @param     code     a #KxPtzCommand, or another code as told there
 * @param     preset   the number of the preset, for the commands that have one
 * @param[in] name     the preset's name, for #KX_PTZ_SET_PRESET; not looked at for any other command
 * @param     fisheye  not 0: the command is for a view of a fisheye camera; makes no difference to focus, iris, lights,
 *                     wiper and patrol
 * @param     view     the fisheye view, from 0
 * @param     speed    on the camera's own scale; -1: none is sent. 32 bits of it are sent.
 * @return 0, or -1: also when the camera answers nothing to the question for its model
 */
KX_API int Kx_Ipc_PTZControl(long userId, int64_t code, int preset, const char* name, uint8_t fisheye,
                             int view, int64_t speed);

/**
 * Reads the settings of the serial port.
 *
 * @param      userId  the session
 * @param[out] info    the settings. The camera tells the baud rate as how often 2400 is doubled; where that is not
 *                     from 0 to 62, the field is untouched.
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetPTZ(long userId, PtzInfo* info);

/**
 * Writes the settings of the serial port. The baud rate sent is not always the one given: cameras get 0 for
 * less than 2400, 1 (which reads as 4800) for less than 9600 and 2 (which reads as 9600) from there on.
 *
 * @param     userId  the session
 * @param[in] info    the settings
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetPTZ(long userId, const PtzInfo* info);

/**
 * Reads the zoom position (`zoompos`).
 *
 * @param         userId  the session
 * @param[in,out] zoom    the position; untouched when not told
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetPTZZoom(long userId, int* zoom);

/**
 * Zooms to a position.
 *
 * @param userId  the session
 * @param zoom    the position; more than 100 is sent as 100, a negative one as it is
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetPTZZoom(long userId, int zoom);

/**
 * Asks whether the light is on (`lightstatus`).
 *
 * @param         userId  the session
 * @param[in,out] status  status code; untouched when not told
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetPTZLightStatus(long userId, int* status);

/**
 * Asks whether the white-light LED is on (`white_led_status`).
 *
 * @param         userId  the session
 * @param[in,out] status  status code; untouched when not told
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetWhiteLEDStatus(long userId, int* status);

/**
 * Switches the white-light LED.
 *
 * @param userId  the session
 * @param status  status code
 * @return 0 when "OK" stands anywhere in the answer, its headers included; else -1
 */
KX_API int Kx_Ipc_SetWhiteLEDStatus(long userId, int status);

/**
 * Reads the parameters of the white-light LED. 1023 bytes of the answer are read.
 *
 * @param      userId  the session
 * @param[out] param   the parameters
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetWhiteLEDParamStatus(long userId, WhiteLedParam* param);

/**
 * Reads the settings of automatic tracking. 10239 bytes of the answer are read.
 *
 * @param         userId  the session
 * @param[in,out] info    the settings. Of a day that the camera tells, the hours and minutes of the periods told are
 *                        filled, and `enable`, from all that stands in the first three periods then.
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetPTZAutoTrack(long userId, PtzAutoTrackInfo* info);

/**
 * Writes the settings of automatic tracking, but for `manual_tracking`.
 *
 * @param     userId  the session
 * @param[in] info    the settings. Of a day whose `enable` is 0, three empty periods are sent.
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetPTZAutoTrack(long userId, const PtzAutoTrackInfo* info);

/**
 * Reads what the camera tracks just now. 10239 bytes of the answer are read, and no point is looked for from number
 * #KX_MOST_TRACK_POINTS on.
 *
 * @param         userId  the session
 * @param[in,out] info    the points. As many are filled as `track_point_num` says after the reading: make room for as
 *                        many as the camera may tell. What the camera does not tell of a point is untouched.
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetAutoTrackPoint(long userId, AutoTrackPointInfo* info);

/**
 * Switches tracking on or off.
 *
 * @param userId  the session
 * @param value   1: on, 0: off
 * @param mode    0: manual tracking; else automatic tracking and its frame in the picture
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetManualAutoTrack(long userId, int value, int mode);

/**
 * Has the camera track what is in a part of the picture.
 *
 * @param     userId  the session
 * @param[in] region  five numbers: the first is not sent, the others are the part's sides as the camera counts them,
 *                    sent with two decimal places
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetManualTrackPoint(long userId, const float* region);

/**
 * Reads the iris mode of the lens (`imaging_settings_lens_iris_mode`). 1023 bytes of the answer are read.
 *
 * @param         userId  the session
 * @param[in,out] lens    mode code; untouched when not told
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetCameraLens(long userId, int* lens);

/**
 * Reads the state of the digital zoom (`getdigitposzmstate`). 127 bytes of the answer are read.
 *
 * @param         userId  the session
 * @param[in,out] state   state code; untouched when not told
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetDigitposzmState(long userId, int* state);

/**
 * Reads the zoom ratio (`getzoomnumber`). 127 bytes of the answer are read.
 *
 * @param         userId  the session
 * @param[in,out] number  the ratio; untouched when not told
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetZoomNumber(long userId, int* number);

/**
 * Asks whether the camera moves. 10239 bytes of the answer are read.
 *
 * @param      userId  the session
 * @param[out] status  every field is filled; what the camera does not tell is 0
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetPtzRunStatus(long userId, PtzRunStatus* status);

#ifdef __cplusplus
}
#endif

#endif
