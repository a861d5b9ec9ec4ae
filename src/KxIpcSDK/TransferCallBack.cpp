// Progress of file transfers for the application.
#include <KxIpcSDK/KxStorage.h>

#include "Core/TransferWatcher.h"

void Kx_Sdk_SetTransferCallBack(KxTransferCallBack callback, void* user)
{
    setTransferWatcher({callback, user});
}
