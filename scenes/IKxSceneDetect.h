// The control interfaces of the scene detect filter and its class id: all that a host needs to steer it.
#pragma once

#include "KxPlatform.h"

#include <cstdint>

/// The class to ask the module's class factory for.
inline constexpr CLSID CLSID_SceneDetectFilter = {
    0x54702E50, 0x7AC5, 0x4D09, {0xAF, 0x00, 0xC3, 0x00, 0x84, 0x62, 0x7A, 0x5F}};
/// The filter category in which the module registers the filter: "Tamrak Auxiliary Filters".
inline constexpr CLSID CLSID_TamrakAuxiliaryFilters = {
    0x5F710207, 0xCF33, 0x40FA, {0xB8, 0x19, 0xE3, 0xAE, 0xE4, 0x7E, 0xD0, 0xB7}};

/// The identifier that is written `text`: eight, four, four, four and twelve hexadecimal digits.
constexpr IID KxIdentifier(const char (&text)[37]) {
    std::uint8_t bytes[16] = {};
    int digits = 0;
    for (int i = 0; i < 36; ++i)
        if (text[i] != '-') {
            const int value = text[i] <= '9' ? text[i] - '0' : text[i] - 'A' + 10;
            bytes[digits / 2] = static_cast<std::uint8_t>(bytes[digits / 2] * 16 + value);
            ++digits;
        }
    IID id = {};
    for (int i = 0; i < 4; ++i)
        id.Data1 = id.Data1 << 8 | bytes[i];
    id.Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
    id.Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
    for (int i = 0; i < 8; ++i)
        id.Data4[i] = bytes[8 + i];
    return id;
}

// An interface and its identifier, IID_ and the interface's name; bound to it for __uuidof and IID_PPV_ARGS
// where the compiler has these.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define KX_INTERFACE(name, text)                                                                             \
    struct KX_INTERFACE_ID(text) name;                                                                       \
    inline constexpr IID IID_##name = KxIdentifier(text);                                                    \
    KX_BIND_INTERFACE_ID(name, IID_##name)
// NOLINTEND(bugprone-macro-parentheses)

KX_INTERFACE(IKxSceneDetect, "7A5A6A86-2706-4160-AAAD-28936E7249A9")
KX_INTERFACE(IKxSceneDetect2, "908663DA-46DC-44EF-9A05-D3C4EB9B3C91")
KX_INTERFACE(IKxSceneDetectEx, "6DECD64D-B9AA-45E3-93D7-539CC0A595A6")
KX_INTERFACE(IKxSceneDetectTuning, "6769FA65-C136-45B3-A605-ACFAC4B9D785")
KX_INTERFACE(IKxSceneDetectDistances, "56104B2B-A1BD-4A80-BD06-26291E568DEF")
#undef KX_INTERFACE
#undef KX_INTERFACE_ID
#undef KX_BIND_INTERFACE_ID

/// How scenes are found; the numbers of SetDetectionMethod. Any other value is stored too and finds none.
enum KxDetectionMethod : std::uint32_t {
    KxMethodTimestamp = 0, ///< a jump of more than one second in the recording time of DV frames
    KxMethodVideo = 1,     ///< a picture change
    KxMethodInterval = 2,  ///< every N-th frame
    KxMethodManual = 3,    ///< only where the host marks one (the default)
};

/// Steers detection and hands out scenes. Every run also has a scene at its first frame.
///
/// Choose the method before connecting the filter's input: it decides which media types are accepted.
/// Methods may be called from any thread; positions are frame numbers counted from the run's first frame.
struct IKxSceneDetect : public IUnknown {
    /// Starts a run (drops queued scenes, restarts the counters) or ends it (drops queued scenes, writes the
    /// scene-list file if one is named). Drain the queue before ending. Always S_OK.
    STDMETHOD(EnableDetection)(BOOL bEnable) = 0;
    /// Hands out the oldest queued scene. Any pointer may be null; with pictures off the picture pointers
    /// come back null. What is handed out belongs to the filter and stays valid until ReleaseScene, the next
    /// GetNextScene, EnableDetection or the end of the filter. An empty queue gives VFW_S_NO_MORE_ITEMS, a
    /// success code (compare with S_OK), and position 0xFFFFFFFF; `pdwPos` must then not be null.
    STDMETHOD(GetNextScene)(BITMAPINFOHEADER** ppHeader, BYTE** ppBits, ULONG* pdwPos) = 0;
    /// Destroys the oldest queued scene. VFW_S_NO_MORE_ITEMS when there is none.
    STDMETHOD(ReleaseScene)() = 0;
    /// The run's first DV timecode as a frame number, not corrected for drop-frame. E_FAIL for null.
    STDMETHOD(GetStartTimecode)(ULONG* pdwFrames) = 0;
    /// One of KxDetectionMethod; not checked. Takes effect at the next sample.
    STDMETHOD(SetDetectionMethod)(ULONG dwMethod) = 0;
    /// E_FAIL for null.
    STDMETHOD(GetDetectionMethod)(ULONG* pdwMethod) = 0;
    /// Frames per scene for the interval method; 0 switches it off.
    STDMETHOD(SetSceneInterval)(ULONG dwFrames) = 0;
    /// The next frame becomes a scene, whatever the method.
    STDMETHOD(MarkScene)() = 0;
    /// Frames seen in the run; still answered after its end. The pointer is not checked.
    STDMETHOD(GetFrameCount)(ULONG* pdwFrames) = 0;
    /// The current DV timecode minus the run's first, in real frames (drop-frame corrected); needs
    /// EnableTimecode. The pointer is not checked.
    STDMETHOD(GetCurrentTimecode)(ULONG* pdwFrames) = 0;
    /// Reads the timecode of every DV frame from now on, or stops reading it.
    STDMETHOD(EnableTimecode)(BOOL bEnable) = 0;
    /// S_OK when timecode is read, else S_FALSE.
    STDMETHOD(IsTimecodeEnabled)() = 0;

  protected:
    ~IKxSceneDetect() = default;
};

/// Adds the scene-list file: XML text with the run's positions, written when detection is switched off.
struct IKxSceneDetect2 : public IKxSceneDetect {
    /// Names the file for the end of this run or the next; null or "" names none. The path is copied and not
    /// checked; it is forgotten after one attempt at writing. Failures are reported to the log only.
    STDMETHOD(EnableSceneListFile)(LPCWSTR pszPath) = 0;
    STDMETHOD(DisableSceneListFile)() = 0;

  protected:
    ~IKxSceneDetect2() = default;
};

/// Offsets, the length of the queue, and whether scenes keep pictures.
struct IKxSceneDetectEx : public IUnknown {
    /// Added to "Video" positions of samples without a duration. Reset by EnableDetection and when the
    /// filter leaves the stopped state: set it after both.
    STDMETHOD(SetFrameOffset)(LONG nFrames) = 0;
    /// Added to the sample time of "Video" positions, in 100 ns. Reset by EnableDetection.
    STDMETHOD(SetTimeOffset)(LONGLONG rtOffset) = 0;
    /// Scenes queued and not yet released. The pointer is not checked.
    STDMETHOD(GetSceneCount)(ULONG* pdwCount) = 0;
    /// Whether scenes added from now on keep a copy of their picture (the default).
    STDMETHOD(EnableSceneBitmaps)(BOOL bEnable) = 0;

  protected:
    ~IKxSceneDetectEx() = default;
};

/// The parameters of the picture comparison (KxMethodVideo), each with its range and its default. The
/// difference of a frame is the mean absolute difference of its grid of luma samples to that of the frame
/// before, its level their mean: both 0..255.
enum KxDetectionParameter : std::uint32_t {
    /// 0..255 (13): by how much a frame's difference must exceed its neighbours' to be a cut.
    KxCutThreshold = 0,
    /// -1..255 (25): mean level up to which a frame is dark; the darkest of a fade starts a scene. -1: none.
    KxDarkLevel = 1,
    /// 1..255 (255): the most that one sample adds to a difference.
    KxClamp = 2,
    /// 1..4 (3): how many of its four neighbours, two on either side, a cut must exceed.
    KxVotes = 3,
    /// 0..2147483647 (the process-wide length, 0): frames after which a scene ends without a cut; 0: never.
    KxLongestScene = 4,
    // The part of the picture that is compared, in per mille of the picture's width and height as it is
    // stored: the samples whose blocks have their centre in it, and never none. What of it lies outside the
    // picture has no samples.

    /// 0..999 (0).
    KxAreaLeft = 5,
    /// 0..999 (0).
    KxAreaTop = 6,
    /// 1..1000 (1000).
    KxAreaWidth = 7,
    /// 1..1000 (1000).
    KxAreaHeight = 8,
};

/// What was found about a frame; the flags of KxFrameFigures.
enum KxFrameFlags : std::uint32_t {
    KxFrameFilled = 1, ///< its difference of 0, a repeated frame amid motion, was taken for nFilled
    KxFrameDark = 2,   ///< the darkest of a fade
    KxFrameCut = 4,    ///< a scene starts with it; set for a run's first frame, too, once there are three
};

/// The figures of one frame. Frame 1 of a run and its last two are measured, but never judged: without the
/// last two flags.
struct KxFrameFigures {
    ULONG dwPosition; ///< number of the frame in the run, as GetFrameCount counts
    LONG nDifference; ///< to the frame before, as it was measured; of the first frame to black
    LONG nLevel;
    LONG nFilled;  ///< the difference as it was judged: nDifference but for KxFrameFilled
    ULONG dwFlags; ///< of KxFrameFlags
};

/// Sets the parameters of the picture comparison for this filter alone, and hands out its figures.
///
/// Methods may be called from any thread, while samples stream, too. Parameters count from the next run on: a
/// run is judged by those that were set when EnableDetection(TRUE) began it, to its end.
struct IKxSceneDetectTuning : public IUnknown {
    /// `dwParameter`: one of KxDetectionParameter. E_INVALIDARG for another, and for a value outside its
    /// range; nothing changes then.
    STDMETHOD(SetParameter)(ULONG dwParameter, LONG nValue) = 0;
    /// What the next run will be judged by. E_INVALIDARG for an unknown parameter, E_POINTER for null.
    STDMETHOD(GetParameter)(ULONG dwParameter, LONG* pnValue) = 0;
    /// The least and the greatest value that SetParameter takes, and the default. Any pointer may be null.
    /// E_INVALIDARG for an unknown parameter.
    STDMETHOD(GetParameterRange)(ULONG dwParameter, LONG* pnLeast, LONG* pnMost, LONG* pnDefault) = 0;
    /// All back to their defaults; the longest scene follows the process-wide length again. Always S_OK.
    STDMETHOD(ResetParameters)() = 0;
    /// Whether the figures of frames compared from now on are kept (off by default). Switching off drops
    /// those that are queued. E_OUTOFMEMORY when there is no memory for them.
    STDMETHOD(EnableFrameFigures)(BOOL bEnable) = 0;
    /// Hands out the oldest figures, at most `dwCount` (above 0), and says how many. They are in the order of
    /// the frames. A frame's figures are final, and handed out, once two more frames were compared; those of
    /// the last two come after EnableDetection(FALSE), which keeps all that are queued until
    /// EnableDetection(TRUE) drops them. 65536 are kept: if more come before they are taken the oldest are
    /// lost, and positions leave a gap. Frames that can't be compared have none. VFW_S_NO_MORE_ITEMS, a
    /// success code, when there are none (yet); E_POINTER for null.
    STDMETHOD(GetFrameFigures)(ULONG dwCount, KxFrameFigures* pFigures, ULONG* pdwTaken) = 0;

  protected:
    ~IKxSceneDetectTuning() = default;
};

/// The frames back that a frame's distances are measured to.
inline constexpr LONG KxDistanceSpans[8] = {2, 3, 4, 5, 8, 16, 32, 64};

/// How far one frame is from earlier ones of its run: nDifference of KxFrameFigures, measured to the frames
/// that many back, and under the same KxClamp; -1 where the run has no such frame yet.
struct KxFrameDistances {
    LONG nDistance[8]; ///< in the order of KxDistanceSpans
    LONG nVariance;    ///< mean square deviation of the frame's samples from their mean: 0..16256
    /// Mean absolute difference of samples that are neighbours in a row, in 1/64: 0..16320.
    LONG nDetail;
};

/// Measures each frame's distances to earlier ones beside its difference, for hosts that tell flashes, fades
/// and dissolves apart. The scenes that the filter finds are the same with and without.
///
/// Methods may be called from any thread, while samples stream, too.
struct IKxSceneDetectDistances : public IUnknown {
    /// Whether the next run measures distances (off by default); it keeps 64 grids for that. They are handed
    /// out with the figures, which IKxSceneDetectTuning::EnableFrameFigures switches on. Switching off drops
    /// those that are queued. E_OUTOFMEMORY when there is no memory for them.
    STDMETHOD(EnableFrameDistances)(BOOL bEnable) = 0;
    /// IKxSceneDetectTuning::GetFrameFigures, which takes from the same queue, with each frame's distances:
    /// -1 all of them where none were measured. `pDistances` has room for as many as `pFigures`.
    STDMETHOD(GetFrameDistances)
    (ULONG dwCount, KxFrameFigures* pFigures, KxFrameDistances* pDistances, ULONG* pdwTaken) = 0;

  protected:
    ~IKxSceneDetectDistances() = default;
};
