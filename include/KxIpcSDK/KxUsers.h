/**
 * @file
 * User accounts of a camera: its ten user slots, passwords, the password challenge and the security questions.
 *
 * What all calls of this header have in common is what KxNetwork.h says of its calls, and besides, unless a function
 * says otherwise:
 * - Names and passwords go into the request as they stand, but for blanks, which are encoded. The camera's language
 *   takes a colon for the end of a name or password and an ampersand for the end of the setting; refuse both, and
 *   control characters, in texts that come from users. A password longer than 30 bytes can not be logged in with, see
 *   Kx_Ipc_Login().
 * - Calls that change an account return 0 only when the camera has confirmed the change. When it answers without the
 *   confirmation, they return -1 and set no error. Of the answer the first 255 characters are read, headers included; a
 *   confirmation behind them counts as missing. So after -1 the change may have been made: read the users back.
 * - #KX_ERROR_FORBIDDEN, with nothing sent: the session is locked against account management. Kx_Ipc_GetUserType(),
 *   Kx_Ipc_ModifyPassword() and Kx_Ipc_PasswordChallenge() do not ask for that.
 * - No text may be null: -1 with no error.
 * - They print a trace of each answer that is no refusal, without its contents, on standard output; the two gets of records do not.
 *
 * Authorities and privileges are numbers of the camera's own and pass unchanged.
 */
#ifndef KXIPCSDK_KXUSERS_H
#define KXIPCSDK_KXUSERS_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A user to be added. */
typedef struct UserAccountInfo
{
    char name[32];      /**< user name */
    char password[512]; /**< password */
    int authority;      /**< authority */
} UserAccountInfo;

/** One of a camera's ten user slots. */
typedef struct UserListEntry
{
    char name[136];    /**< user name, at most 32 characters; empty: the slot is free, on
                            cameras that end lines with a line feed */
    uint8_t authority; /**< authority; its low byte, should the camera tell a greater number */
    uint8_t privilege; /**< privilege, likewise */
} UserListEntry;

/** The security questions by which a forgotten password is replaced. */
typedef struct SqaInfo
{
    int sqa_enable;           /**< 1: questions are asked */
    int sqa_type_0;           /**< kind of the first question */
    char sqa_question_0[256]; /**< its text */
    int sqa_type_1;           /**< kind of the second question */
    char sqa_question_1[256]; /**< its text */
    int sqa_type_2;           /**< kind of the third question */
    char sqa_question_2[256]; /**< its text */
} SqaInfo;

/**
 * Tells a user's authority. Two requests: `user.0` to `user.9`, among which the name is looked for, then `authority.N` of
 * its slot. The name must stand alone at the end of its line; it is not found on cameras that end their lines with
 * carriage return and line feed.
 *
 * @param userId  the session
 * @param name    the user, not empty; of a name above 60 characters only the beginning is compared
 * @return the number behind the first "=" of the answer, headers included, which is the authority unless a header holds
 *         one; 0 when there is none; or -1, with no error when there is no such user
 */
KX_API int Kx_Ipc_GetUserType(long userId, const char* name);

/**
 * Adds a user (`adduser`).
 *
 * @param     userId   the session
 * @param[in] account  name, password and authority
 * @return 0, or -1
 */
KX_API int Kx_Ipc_AddUser(long userId, const UserAccountInfo* account);

/**
 * Deletes a user (`deluser`).
 *
 * @param userId  the session
 * @param name    the user
 * @return 0, or -1
 */
KX_API int Kx_Ipc_DeleteUser(long userId, const char* name);

/**
 * Gives a user a new password: asks for the authority as Kx_Ipc_GetUserType() does, then deletes the user and adds it
 * again in one request (`deluser`, `adduser`).
 *
 * **Only for users that exist**: when the authority can not be had, the user is added with authority -1, and a camera
 * that refuses that has the user deleted. Ask Kx_Ipc_GetUserType() first, and see that
 * the authority it tells can be true. The last error may then be set although
 * this call succeeds.
 *
 * The session keeps the password that it was logged in with. When that user's own password has changed, log in again,
 * or all further requests fail with #KX_ERROR_UNAUTHORISED.
 *
 * @param userId    the session
 * @param name      the user
 * @param password  the new password
 * @return 0, or -1
 */
KX_API int Kx_Ipc_ModifyPassword(long userId, const char* name, const char* password);

/**
 * Fetches the camera's challenge: a key, and the number under which the camera remembers it. What is done with them is
 * the application's affair. One request, without the first 5 seconds that others take to see whether the camera
 * reacts; it waits 5 seconds to connect and 5 for the first byte of the answer, of which the first 255 characters
 * are read. A long key is cut by that.
 *
 * Errors besides those of all calls: #KX_ERROR_FORBIDDEN as the camera answers; #KX_ERROR_BUSY for an answer that holds
 * no "OK". None is set when the camera closes the connection without an answer, or when the process has no descriptor
 * left.
 *
 * @param      userId     the session
 * @param      publicKey  the application's public key, sent as it stands but for blanks; no line breaks, at most about
 *                        20000 characters
 * @param[out] keyOut     2048 bytes; the key, in which "%%" has become "%". Untouched when the answer has no `key`
 * @param[out] keyIdOut   the key's number. Untouched when the answer has no `keyid`
 * @return 0, or -1 with both untouched
 */
KX_API int Kx_Ipc_PasswordChallenge(long userId, const char* publicKey, char* keyOut, int* keyIdOut);

/**
 * Adds or changes a user (`newsetuser`) and proves with the MD5 digest of the session's password that an administrator
 * asks for it (`checkadminPwd`). Waits 5 seconds to reach the camera, 5 to connect and 5 for the first byte of the
 * answer. All parameters together may take 2046 characters, with the request's words.
 *
 * Errors besides those of all calls: #KX_ERROR_FORBIDDEN as the camera answers. None is set when the camera closes the
 * connection without an answer.
 *
 * @param userId    the session
 * @param name      the user
 * @param password  the user's password
 * @param a         the first number of the camera's own
 * @param b         the second
 * @param c         the third; -1: it is not sent
 * @return 0, or -1
 */
KX_API int Kx_Ipc_NewSetUser(long userId, const char* name, const char* password, int a, int b, int c);

/**
 * Reads the ten user slots. Three requests: `user.0` to `user.9`, then their `authority`, then their `privilege`.
 *
 * @param      userId   the session
 * @param[out] entries  ten entries, filled as far as the requests come
 * @return 0, also when the second or third answer is empty; or -1, with the entries unchanged only when the first
 *         request failed
 */
KX_API int Kx_Ipc_GetAllUser(long userId, UserListEntry* entries);

/**
 * Reads the security questions, from the camera's administrative path. The camera ends each line with carriage return
 * and line feed. Of the answer the first 4095 bytes are read.
 *
 * @param      userId  the session
 * @param[out] info    every field, from the key of its name
 * @return 0, also for an answer that begins with a zero byte; or -1
 */
KX_API int Kx_Ipc_GetSQA(long userId, SqaInfo* info);

#ifdef __cplusplus
}
#endif

#endif
