// The records of the public headers are a binary interface: applications built against one version run with the next.
#include <cstddef>
#include <type_traits>

#include <KxIpcSDK/KxAudio.h>
#include <KxIpcSDK/KxCapabilities.h>
#include <KxIpcSDK/KxMedia.h>
#include <KxIpcSDK/KxNetwork.h>
#include <KxIpcSDK/KxOsd.h>
#include <KxIpcSDK/KxPtz.h>
#include <KxIpcSDK/KxSearch.h>
#include <KxIpcSDK/KxStorage.h>
#include <KxIpcSDK/KxSystem.h>
#include <KxIpcSDK/KxUsers.h>
#include <KxIpcSDK/KxVideo.h>

#define RECORD(record, size)                                                                                 \
    static_assert(std::is_standard_layout_v<record> && std::is_trivially_copyable_v<record>);                \
    static_assert(sizeof(record) == (size))
#define FIELD(record, field, offset, size)                                                                   \
    static_assert(offsetof(record, field) == (offset) && sizeof(record::field) == (size))

RECORD(NetworkInfo, 160);
FIELD(NetworkInfo, dhcpenable, 0, 1);
FIELD(NetworkInfo, netip, 1, 32);
FIELD(NetworkInfo, netmask, 33, 32);
FIELD(NetworkInfo, gateway, 65, 32);
FIELD(NetworkInfo, dnsip, 97, 32);
FIELD(NetworkInfo, httpport, 132, 4);
FIELD(NetworkInfo, macaddress, 136, 24);

RECORD(WifiInfo, 528);
FIELD(WifiInfo, wifissid, 0, 64);
FIELD(WifiInfo, wifimode, 64, 1);
FIELD(WifiInfo, wifiencrypt, 65, 1);
FIELD(WifiInfo, wepauthtype, 66, 1);
FIELD(WifiInfo, wepkeylength, 67, 1);
FIELD(WifiInfo, wepkeyformat, 68, 1);
FIELD(WifiInfo, wepkeyindex, 69, 1);
FIELD(WifiInfo, wepkey1, 70, 32);
FIELD(WifiInfo, wepkey2, 102, 32);
FIELD(WifiInfo, wepkey3, 134, 32);
FIELD(WifiInfo, wepkey4, 166, 32);
FIELD(WifiInfo, wpapairwise, 198, 1);
FIELD(WifiInfo, wpakey, 199, 64);
FIELD(WifiInfo, wpsenable, 263, 1);
FIELD(WifiInfo, wpspincode, 264, 32);
FIELD(WifiInfo, wpsconntype, 296, 4);
FIELD(WifiInfo, wpsroutessid, 300, 64);
FIELD(WifiInfo, wpsroutepin, 364, 32);
FIELD(WifiInfo, wifidhcp, 396, 1);
FIELD(WifiInfo, wifinip, 397, 32);
FIELD(WifiInfo, wifinmask, 429, 32);
FIELD(WifiInfo, wifigway, 461, 32);
FIELD(WifiInfo, wifidns, 493, 32);

RECORD(DdnsInfo, 1044);
FIELD(DdnsInfo, ddnsenable, 0, 1);
FIELD(DdnsInfo, ddnsdomain, 1, 64);
FIELD(DdnsInfo, ddnsusername, 65, 32);
FIELD(DdnsInfo, ddnspassword, 97, 512);
FIELD(DdnsInfo, ddnshash, 609, 128);
FIELD(DdnsInfo, ddnshost, 737, 128);
FIELD(DdnsInfo, ddnsurl, 865, 128);
FIELD(DdnsInfo, ddnshttpport, 996, 4);
FIELD(DdnsInfo, ddnsrtspport, 1000, 4);
FIELD(DdnsInfo, ddnsplaybackport, 1004, 4);
FIELD(DdnsInfo, planetenable, 1008, 1);
FIELD(DdnsInfo, planeteasymode, 1009, 1);
FIELD(DdnsInfo, macaddress, 1010, 32);

RECORD(SmtpInfo, 1100);
FIELD(SmtpInfo, smtpuser, 0, 32);
FIELD(SmtpInfo, smtpsender, 32, 256);
FIELD(SmtpInfo, smtppwd, 288, 512);
FIELD(SmtpInfo, smtpip, 800, 32);
FIELD(SmtpInfo, smtpport, 832, 4);
FIELD(SmtpInfo, emailuser, 836, 256);
FIELD(SmtpInfo, smtpauth, 1092, 4);
FIELD(SmtpInfo, smtpenable, 1096, 4);

RECORD(FtpInfo, 484);
FIELD(FtpInfo, ftpip, 0, 64);
FIELD(FtpInfo, ftpipport, 64, 4);
FIELD(FtpInfo, ftpuser, 68, 192);
FIELD(FtpInfo, ftppassword, 260, 32);
FIELD(FtpInfo, ftppath, 292, 192);

RECORD(UpnpInfo, 92);
FIELD(UpnpInfo, upnpenable, 0, 1);
FIELD(UpnpInfo, upnpname, 1, 64);
FIELD(UpnpInfo, upnptype, 65, 1);
FIELD(UpnpInfo, upnphttpport, 68, 4);
FIELD(UpnpInfo, httpport, 72, 4);
FIELD(UpnpInfo, upnpstatushttp, 76, 1);
FIELD(UpnpInfo, upnprtspport, 80, 4);
FIELD(UpnpInfo, mainrtspport, 84, 4);
FIELD(UpnpInfo, upnpstatusrtsp, 88, 1);

RECORD(PortInfo, 16);
FIELD(PortInfo, httpport, 0, 4);
FIELD(PortInfo, onvifport, 4, 4);
FIELD(PortInfo, mainrtspport, 8, 4);
FIELD(PortInfo, subrtspport, 12, 4);

RECORD(UserAccountInfo, 548);
FIELD(UserAccountInfo, name, 0, 32);
FIELD(UserAccountInfo, password, 32, 512);
FIELD(UserAccountInfo, authority, 544, 4);

RECORD(UserListEntry, 138);
FIELD(UserListEntry, name, 0, 136);
FIELD(UserListEntry, authority, 136, 1);
FIELD(UserListEntry, privilege, 137, 1);

RECORD(SqaInfo, 784);
FIELD(SqaInfo, sqa_enable, 0, 4);
FIELD(SqaInfo, sqa_type_0, 4, 4);
FIELD(SqaInfo, sqa_question_0, 8, 256);
FIELD(SqaInfo, sqa_type_1, 264, 4);
FIELD(SqaInfo, sqa_question_1, 268, 256);
FIELD(SqaInfo, sqa_type_2, 524, 4);
FIELD(SqaInfo, sqa_question_2, 528, 256);

RECORD(DateTimeInfo, 240);
FIELD(DateTimeInfo, system_datetime_datetimetype, 0, 1);
FIELD(DateTimeInfo, date, 1, 16);
FIELD(DateTimeInfo, time, 17, 16);
FIELD(DateTimeInfo, year, 36, 4);
FIELD(DateTimeInfo, month, 40, 4);
FIELD(DateTimeInfo, day, 44, 4);
FIELD(DateTimeInfo, hour, 48, 4);
FIELD(DateTimeInfo, minute, 52, 4);
FIELD(DateTimeInfo, second, 56, 4);
FIELD(DateTimeInfo, system_datetime_daylight, 60, 1);
FIELD(DateTimeInfo, system_datetime_ntp_server_address, 61, 135);
FIELD(DateTimeInfo, system_datetime_timezone_tz, 196, 10);
FIELD(DateTimeInfo, system_datetime_zonename_tz, 206, 32);

RECORD(SystemInfo, 468);
FIELD(SystemInfo, title, 0, 256);
FIELD(SystemInfo, productmodel, 256, 32);
FIELD(SystemInfo, oemmodel, 288, 32);
FIELD(SystemInfo, softversion, 320, 32);
FIELD(SystemInfo, deviceversion, 352, 32);
FIELD(SystemInfo, sdkversion, 384, 32);
FIELD(SystemInfo, cputype, 416, 32);
FIELD(SystemInfo, system_audio_support, 448, 4);
FIELD(SystemInfo, system_audio_support_mode, 452, 4);
FIELD(SystemInfo, system_lpr_support, 456, 4);
FIELD(SystemInfo, system_lpr_version, 460, 4);
FIELD(SystemInfo, system_alarm_output_support, 464, 4);

RECORD(ModelGeneralInfo, 40);
FIELD(ModelGeneralInfo, system_io_support, 0, 4);
FIELD(ModelGeneralInfo, system_audio_support, 4, 4);
FIELD(ModelGeneralInfo, system_fisheye_support, 8, 4);
FIELD(ModelGeneralInfo, system_vca_support, 12, 4);
FIELD(ModelGeneralInfo, system_audio_alarm_support, 16, 4);
FIELD(ModelGeneralInfo, system_led_support, 20, 4);
FIELD(ModelGeneralInfo, system_led_group_support, 24, 4);
FIELD(ModelGeneralInfo, system_ptz_motion_support, 28, 4);
FIELD(ModelGeneralInfo, system_ptz_motion_max_zoom_times, 32, 4);
FIELD(ModelGeneralInfo, system_vca_type, 36, 4);

RECORD(SearchDeviceInfo, 292);
FIELD(SearchDeviceInfo, ip, 0, 64);
FIELD(SearchDeviceInfo, port, 64, 4);
FIELD(SearchDeviceInfo, reserved, 68, 64);
FIELD(SearchDeviceInfo, name, 132, 128);
FIELD(SearchDeviceInfo, model, 260, 32);

RECORD(VideoInfo, 88);
FIELD(VideoInfo, reserved, 0, 1);
FIELD(VideoInfo, stream, 1, 1);
FIELD(VideoInfo, enablesubstream, 2, 1);
FIELD(VideoInfo, enablethirdstream, 3, 1);
FIELD(VideoInfo, codec, 4, 1);
FIELD(VideoInfo, codecres, 8, 4);
FIELD(VideoInfo, framerate, 12, 4);
FIELD(VideoInfo, bitrate, 16, 4);
FIELD(VideoInfo, ratecontrol, 20, 1);
FIELD(VideoInfo, profile, 24, 4);
FIELD(VideoInfo, ipratio, 28, 4);
FIELD(VideoInfo, rtspport, 32, 4);
FIELD(VideoInfo, width, 36, 4);
FIELD(VideoInfo, height, 40, 4);
FIELD(VideoInfo, reserved2, 44, 4);
FIELD(VideoInfo, jpegquality, 48, 4);
FIELD(VideoInfo, smartstream, 52, 4);
FIELD(VideoInfo, smartlevel, 56, 4);
FIELD(VideoInfo, limited3516a, 60, 4);
FIELD(VideoInfo, imx274on3516av200, 64, 4);
FIELD(VideoInfo, platformforweb, 68, 4);
FIELD(VideoInfo, eventstreamenable, 72, 4);
FIELD(VideoInfo, eventframerate, 76, 4);
FIELD(VideoInfo, eventbitrate, 80, 4);
FIELD(VideoInfo, eventiframe, 84, 4);

RECORD(AudioInfo, 40);
FIELD(AudioInfo, audioenable, 0, 1);
FIELD(AudioInfo, audiomode, 1, 1);
FIELD(AudioInfo, audioinvolume, 4, 4);
FIELD(AudioInfo, alarmlevel, 8, 4);
FIELD(AudioInfo, audiooutvolume, 12, 4);
FIELD(AudioInfo, speex, 16, 4);
FIELD(AudioInfo, encoding, 20, 4);
FIELD(AudioInfo, samplerate, 24, 4);
FIELD(AudioInfo, audiobitrate, 28, 4);
FIELD(AudioInfo, hasaudioout, 32, 4);
FIELD(AudioInfo, audioagc, 36, 4);

RECORD(AudioSampleRateOption, 72);
FIELD(AudioSampleRateOption, samplerate, 0, 4);
FIELD(AudioSampleRateOption, bitratecount, 4, 4);
FIELD(AudioSampleRateOption, bitrates, 8, 64);

RECORD(AudioCodecOption, 656);
FIELD(AudioCodecOption, codec, 0, 4);
FIELD(AudioCodecOption, sampleratecount, 4, 4);
FIELD(AudioCodecOption, samplerates, 8, 648);

RECORD(AudioOptions, 5908);
FIELD(AudioOptions, codeccount, 0, 4);
FIELD(AudioOptions, codecs, 4, 5904);

RECORD(OsdStreamInfo, 103);
FIELD(OsdStreamInfo, valid, 0, 1);
FIELD(OsdStreamInfo, textenable, 1, 1);
FIELD(OsdStreamInfo, datestampenable, 2, 1);
FIELD(OsdStreamInfo, overlaytext, 3, 96);
FIELD(OsdStreamInfo, textposition, 99, 1);
FIELD(OsdStreamInfo, dateposition, 100, 1);
FIELD(OsdStreamInfo, dateformat, 101, 1);
FIELD(OsdStreamInfo, osdfontsize, 102, 1);

RECORD(OsdInfo, 309);
FIELD(OsdInfo, streams, 0, 309);

RECORD(SdCardInfo, 24);
FIELD(SdCardInfo, sdinsert, 0, 1);
FIELD(SdCardInfo, sdtotalsize, 8, 8);
FIELD(SdCardInfo, sdfreesize, 16, 8);

RECORD(RecordInfo, 28);
FIELD(RecordInfo, recordstoragetype, 0, 4);
FIELD(RecordInfo, sdfilemaxsize, 4, 4);
FIELD(RecordInfo, recordframetype, 8, 4);
FIELD(RecordInfo, nasfilemaxsize, 12, 4);
FIELD(RecordInfo, nasrecordframetype, 16, 4);
FIELD(RecordInfo, deletesdoldfile, 20, 4);
FIELD(RecordInfo, msfsprerecordtime, 24, 4);

RECORD(PtzInfo, 16);
FIELD(PtzInfo, ptzprotocol, 0, 1);
FIELD(PtzInfo, ptzbaudrate, 8, 8);

RECORD(TrackTime, 12);
FIELD(TrackTime, hour, 0, 4);
FIELD(TrackTime, minute, 4, 4);
FIELD(TrackTime, second, 8, 4);

RECORD(TrackDaySchedule, 100);
FIELD(TrackDaySchedule, enable, 0, 1);
FIELD(TrackDaySchedule, start, 4, 48);
FIELD(TrackDaySchedule, end, 52, 48);

RECORD(PtzAutoTrackInfo, 720);
FIELD(PtzAutoTrackInfo, auto_tracking_enable, 0, 1);
FIELD(PtzAutoTrackInfo, auto_tracking_show, 1, 1);
FIELD(PtzAutoTrackInfo, auto_tracking_sensitivity, 2, 1);
FIELD(PtzAutoTrackInfo, auto_tracking_max_time, 4, 4);
FIELD(PtzAutoTrackInfo, manual_tracking, 8, 1);
FIELD(PtzAutoTrackInfo, auto_tracking_zoom_mode, 12, 4);
FIELD(PtzAutoTrackInfo, auto_tracking_zoom_number, 16, 4);
FIELD(PtzAutoTrackInfo, schedule, 20, 700);

RECORD(TrackPoint, 24);
FIELD(TrackPoint, id, 0, 4);
FIELD(TrackPoint, type, 4, 4);
FIELD(TrackPoint, startX, 8, 4);
FIELD(TrackPoint, startY, 12, 4);
FIELD(TrackPoint, stopX, 16, 4);
FIELD(TrackPoint, stopY, 20, 4);

RECORD(AutoTrackPointInfo, 12);
FIELD(AutoTrackPointInfo, track_point_num, 0, 4);
FIELD(AutoTrackPointInfo, width, 4, 4);
FIELD(AutoTrackPointInfo, height, 8, 4);
static_assert(offsetof(AutoTrackPointInfo, points) == 12);

RECORD(WhiteLedParam, 12);
FIELD(WhiteLedParam, white_led_alarm, 0, 4);
FIELD(WhiteLedParam, white_led_number, 4, 4);
FIELD(WhiteLedParam, white_led_manual, 8, 4);

RECORD(PtzRunStatus, 24);
FIELD(PtzRunStatus, ptz_run_status, 0, 4);
FIELD(PtzRunStatus, fish_0_ptz_run_status, 4, 4);
FIELD(PtzRunStatus, fish_1_ptz_run_status, 8, 4);
FIELD(PtzRunStatus, fish_2_ptz_run_status, 12, 4);
FIELD(PtzRunStatus, fish_3_ptz_run_status, 16, 4);
FIELD(PtzRunStatus, fish_4_ptz_run_status, 20, 4);

RECORD(MotionSettingsInfo, 788);
FIELD(MotionSettingsInfo, level, 0, 4);
FIELD(MotionSettingsInfo, spaceTime, 4, 4);
FIELD(MotionSettingsInfo, map, 8, 768);
FIELD(MotionSettingsInfo, saveType, 776, 1);
FIELD(MotionSettingsInfo, saveValue1, 780, 4);
FIELD(MotionSettingsInfo, saveValue2, 784, 4);

RECORD(RecordScheduleInfo, 20);
FIELD(RecordScheduleInfo, day, 0, 4);
FIELD(RecordScheduleInfo, startHour, 4, 4);
FIELD(RecordScheduleInfo, startMinute, 8, 4);
FIELD(RecordScheduleInfo, endHour, 12, 4);
FIELD(RecordScheduleInfo, endMinute, 16, 4);

RECORD(FoundFileInfo, 200);
FIELD(FoundFileInfo, data, 0, 192);
FIELD(FoundFileInfo, next, 192, 8);

RECORD(KxLiveStatus, 104);
FIELD(KxLiveStatus, framesReceived, 0, 8);
FIELD(KxLiveStatus, framesDecoded, 8, 8);
FIELD(KxLiveStatus, framesDelivered, 16, 8);
FIELD(KxLiveStatus, framesDropped, 24, 8);
FIELD(KxLiveStatus, bytesReceived, 32, 8);
FIELD(KxLiveStatus, reconnects, 40, 8);
FIELD(KxLiveStatus, motionAlarms, 48, 8);
FIELD(KxLiveStatus, lastFrameTime, 56, 8);
FIELD(KxLiveStatus, recordedBytes, 64, 8);
FIELD(KxLiveStatus, recordedFrames, 72, 8);
FIELD(KxLiveStatus, width, 80, 4);
FIELD(KxLiveStatus, height, 84, 4);
FIELD(KxLiveStatus, connected, 88, 4);
FIELD(KxLiveStatus, refused, 92, 4);
FIELD(KxLiveStatus, recording, 96, 4);
FIELD(KxLiveStatus, reserved, 100, 4);
