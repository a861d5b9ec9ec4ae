// The interface of the AAC decoder (FAAD2), as the library exports it.
//
// The library is linked as a filter on the decoder: the loader takes these names to libfaad when it resolves them, so the
// functions below are never entered. They are here for the library to have the names.
#include <KxIpcSDK/KxExport.h>

#define DECODER_FUNCTION(name)                                                                               \
    KX_API void name()                                                                                       \
    {                                                                                                        \
        __builtin_trap();                                                                                    \
    }

extern "C" {
DECODER_FUNCTION(NeAACDecAudioSpecificConfig)
DECODER_FUNCTION(NeAACDecClose)
DECODER_FUNCTION(NeAACDecDecode)
DECODER_FUNCTION(NeAACDecDecode2)
DECODER_FUNCTION(NeAACDecGetCapabilities)
DECODER_FUNCTION(NeAACDecGetCurrentConfiguration)
DECODER_FUNCTION(NeAACDecGetErrorMessage)
DECODER_FUNCTION(NeAACDecGetVersion)
DECODER_FUNCTION(NeAACDecInit)
DECODER_FUNCTION(NeAACDecInit2)
DECODER_FUNCTION(NeAACDecOpen)
DECODER_FUNCTION(NeAACDecPostSeekReset)
DECODER_FUNCTION(NeAACDecSetConfiguration)
}
