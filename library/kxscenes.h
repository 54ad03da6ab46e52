// Scene detection for frames that a program has already: the C interface of libkxscenes (C99 or later, C++,
// and any foreign-function interface).
//
//   kxscenes_settings settings = {.struct_size = sizeof settings};
//   kxscenes_default_settings(&settings);
//   kxscenes_create(&settings, &detector);
//   for each frame {
//       kxscenes_push(detector, &frame);
//       while (kxscenes_take_scene(detector, &scene) == KXSCENES_OK) ...
//   }
//   kxscenes_end(detector);
//   kxscenes_destroy(detector);
//
// Threads: every function may be called on any thread. Calls on the same detector take turns, also a mark or
// a change of settings while a frame is being pushed; several detectors share nothing. Only kxscenes_destroy
// must not meet any other call on its detector. The library starts no threads and calls nobody back.
//
// Ownership: a detector belongs to whoever created it. The library keeps no pointer that it was given: what a
// structure points to is read during the call only, and results are copied into the caller's structures.
//
// Errors: functions that can fail return one of KXSCENES_OK, KXSCENES_NOTHING or a negative
// KXSCENES_ERROR_...; after an error nothing has changed, unless the function's own text says otherwise, and
// nothing has been written.
//
// Structures: the caller sets struct_size to the structure's sizeof before each call. Later versions add
// fields at the end only, and take the sizes of earlier ones.
#ifndef KXSCENES_H
#define KXSCENES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The version of this header, as kxscenes_version gives that of the library.
#define KXSCENES_VERSION 0x000100

/// Results. Compare with KXSCENES_OK: KXSCENES_NOTHING is no error.
enum {
    KXSCENES_OK = 0,
    KXSCENES_NOTHING = 1,        ///< there is nothing to take (yet)
    KXSCENES_ERROR_NULL = -1,    ///< a pointer that is needed is null
    KXSCENES_ERROR_SIZE = -2,    ///< a struct_size that this library does not know
    KXSCENES_ERROR_VALUE = -3,   ///< a value outside its range
    KXSCENES_ERROR_STRIDE = -4,  ///< rows would overlap, or the picture is larger than memory can be
    KXSCENES_ERROR_CHANGED = -5, ///< format or size differ from the run's first frame: restart first
    KXSCENES_ERROR_ENDED = -6,   ///< the run has ended: restart first
    KXSCENES_ERROR_MEMORY = -7,  ///< no memory is left
    KXSCENES_ERROR_INTERNAL = -8 ///< a fault of the library
};

/// How scenes are found. Every run also has a scene at its first frame, and one at each mark.
enum {
    KXSCENES_TIMESTAMP = 0, ///< a jump of more than one second in the recording time of DV frames
    KXSCENES_VIDEO = 1,     ///< a picture change; told two frames late
    KXSCENES_INTERVAL = 2,  ///< every N-th frame
    KXSCENES_MANUAL = 3     ///< at marks only
};

/// What a frame's bytes are. Pictures are divided into blocks of 8 x 8 pixels from the top left; columns and
/// rows that fill no block are not looked at, and pictures without a whole block can't be compared.
enum {
    /// One byte a pixel: the luma plane of 4:2:0, 4:2:2 ... video, or a grey picture.
    KXSCENES_LUMA8 = 0,
    /// One word a pixel in the machine's byte order, of which `shift` tells the 8 bits that count.
    KXSCENES_LUMA16 = 1,
    /// Y0 U Y1 V.
    KXSCENES_YUY2 = 2,
    /// U Y0 V Y1.
    KXSCENES_UYVY = 3,
    /// Three bytes a pixel: blue, green, red in DIBs, but their order makes no difference.
    KXSCENES_RGB24 = 4,
    /// Four bytes a pixel: blue, green, red and one unused in DIBs. Read as the filter does, which in the
    /// left
    /// column of blocks looks at the bytes before a row, too: any gap between rows is to be filled.
    KXSCENES_RGB32 = 5,
    /// A whole DV frame of 25 Mbit/s, as tapes and files have it.
    KXSCENES_DV = 6
};

/// A time that is not known: the least number of 64 bits.
#define KXSCENES_NO_TIME INT64_MIN

/// What a detector goes by. kxscenes_default_settings fills it; defaults stand in brackets.
typedef struct kxscenes_settings {
    uint32_t struct_size;
    /// How scenes are found (KXSCENES_VIDEO).
    int32_t method;
    /// Frames per scene under KXSCENES_INTERVAL, 0 or more (0). 0 finds none.
    int32_t interval;
    /// Frames per second, by which the recording times of DV are compared: both above 0, or both 0 (0) for
    /// what the line system of the DV frames has.
    int32_t rate_numerator;
    int32_t rate_denominator;
    /// Not 0 (1): scenes of DV tell their timecode and when they were recorded.
    int32_t read_timecode;
    /// Not 0 (0): figures are kept for kxscenes_take_figures.
    int32_t keep_figures;

    // The picture comparison. The difference of a frame is the mean absolute difference of its blocks' luma
    // to that of the frame before, its level their mean: both 0..255.

    /// 0..255 (13): by how much a frame's difference must exceed its neighbours' to be a cut.
    int32_t cut_threshold;
    /// -1..255 (25): mean level up to which a frame is dark; the darkest of a fade starts a scene. -1: none.
    int32_t dark_level;
    /// 1..255 (255): the most that one block adds to a difference.
    int32_t clamp;
    /// 1..4 (3): how many of its four neighbours, two on either side, a cut must exceed.
    int32_t votes;
    /// 0 or more (0): frames after which a scene ends without a cut. 0: never.
    int32_t longest_scene;
    // The part of the picture that is compared, in per mille of its width and height: the blocks whose centre
    // lies in it, and never none. What of it lies outside the picture has no blocks.

    /// 0..999 (0).
    int32_t area_left;
    /// 0..999 (0).
    int32_t area_top;
    /// 1..1000 (1000).
    int32_t area_width;
    /// 1..1000 (1000).
    int32_t area_height;
} kxscenes_settings;

/// One frame. Of a picture all bytes from the first row's first to the last row's last must be readable.
typedef struct kxscenes_frame {
    uint32_t struct_size;
    /// KXSCENES_LUMA8 ... KXSCENES_DV.
    int32_t format;
    /// Pixels, each 1 or more, at most 2^30 together. Not looked at for DV, which knows its own.
    int32_t width;
    int32_t height;
    /// Of KXSCENES_LUMA16 only, 0..8: how many bits of a word lie below the 8 that count. 2 for 10 bits in
    /// the lower part of a word, 8 for any number in the upper part.
    int32_t shift;
    /// Of KXSCENES_DV only: bytes at `data`, 0 or more. Whether a frame has 525 lines (120000 bytes) or 625
    /// (144000) is what most of its header blocks say, or else its size. One that is too short counts, and
    /// shows no change.
    int32_t dv_size;
    /// Bytes from a row to the one below it, at least a row's; negative when the picture lies bottom-up. Not
    /// looked at for DV.
    int64_t stride;
    /// The first byte of the picture's top row, wherever that lies in memory; of the DV frame.
    const void* data;
    /// In nanoseconds from anywhere, or KXSCENES_NO_TIME. Only handed back with a scene.
    int64_t time;
} kxscenes_frame;

/// A timecode. All numbers are -1 where there is none.
typedef struct kxscenes_timecode {
    int32_t hours;
    int32_t minutes;
    int32_t seconds;
    int32_t frames;
    int32_t drop_frame; ///< 1 when it is flagged as such, else 0
} kxscenes_timecode;

/// When something was recorded, by the clock of the camera. Year, month and day are -1 where there is no
/// date, the others where there is no time.
typedef struct kxscenes_recorded {
    int32_t year;
    int32_t month; ///< from 1
    int32_t day;   ///< from 1
    int32_t hours;
    int32_t minutes;
    int32_t seconds;
} kxscenes_recorded;

/// A scene. `time` and what follows are those of frame number `frame`, also where that is two before the one
/// that was being pushed.
typedef struct kxscenes_scene {
    uint32_t struct_size;
    int32_t method;             ///< the method that was set when it was found
    int32_t frame;              ///< its first frame, counted from 0 in the run
    int32_t reserved;           ///< 0
    int64_t time;               ///< as the frame came, or KXSCENES_NO_TIME
    kxscenes_timecode timecode; ///< of DV with `read_timecode`
    kxscenes_recorded recorded; ///< likewise
} kxscenes_scene;

/// What was found about a frame; the flags of kxscenes_figures.
enum {
    KXSCENES_FILLED = 1, ///< its difference of 0, a repeated frame amid motion, was taken for `filled`
    KXSCENES_DARK = 2,   ///< the darkest of a fade
    KXSCENES_CUT = 4     ///< a scene starts with it; set for a run's first frame, too, once there are three
};

/// The figures of one frame under KXSCENES_VIDEO. Frame 1 of a run and its last two are measured, but never
/// judged.
typedef struct kxscenes_figures {
    uint32_t struct_size;
    int32_t frame;
    int32_t difference; ///< to the frame before, as it was measured; of the first frame to black
    int32_t level;
    int32_t filled; ///< the difference as it was judged: `difference` but for KXSCENES_FILLED
    int32_t flags;
} kxscenes_figures;

typedef struct kxscenes_detector kxscenes_detector;

/// The version of the library, as 0xMMmmpp. One that is older than the header (KXSCENES_VERSION) may not know
/// all of its structures.
int32_t kxscenes_version(void);

/// A result in words, in English. Never null; belongs to the library, for ever.
const char* kxscenes_error_text(int32_t result);

/// Fills in the defaults. ERROR_NULL, ERROR_SIZE.
int32_t kxscenes_default_settings(kxscenes_settings* settings);

/// Makes a detector and begins its first run. Null settings: the defaults. `*detector` is null after an
/// error. ERROR_NULL (without `detector`), ERROR_SIZE, ERROR_VALUE, ERROR_MEMORY.
int32_t kxscenes_create(const kxscenes_settings* settings, kxscenes_detector** detector);

/// Frees a detector with all that was not taken; null is allowed. No other call may use it meanwhile or
/// later.
void kxscenes_destroy(kxscenes_detector* detector);

/// Hands out what the detector goes by, changes included. ERROR_NULL, ERROR_SIZE.
int32_t kxscenes_get_settings(kxscenes_detector* detector, kxscenes_settings* settings);

/// Changes settings. Those of the picture comparison take effect with the next run: a run is judged by those
/// that were set when it began. All others take effect with the next frame; figures that were kept are
/// dropped when they are no longer wanted. Restart after a change to KXSCENES_VIDEO: blocks are laid out at
/// the first frame of a run. ERROR_NULL, ERROR_SIZE, ERROR_VALUE, ERROR_MEMORY.
int32_t kxscenes_change_settings(kxscenes_detector* detector, const kxscenes_settings* settings);

/// Watches the next frame; its scenes can be taken afterwards. Format, width and height have to stay those of
/// the run's first frame, but line systems of DV may change. ERROR_NULL, ERROR_SIZE, ERROR_VALUE,
/// ERROR_STRIDE, ERROR_CHANGED, ERROR_ENDED: the frame does not count. ERROR_MEMORY: it counts, but what it
/// would have shown is lost.
int32_t kxscenes_push(kxscenes_detector* detector, const kxscenes_frame* frame);

/// The next frame that is pushed becomes a scene. Under KXSCENES_VIDEO the scene bears, as all others do, the
/// number of the frame two before that (never less than 0). Marks do not add up; a restart forgets one.
/// ERROR_NULL, ERROR_ENDED.
int32_t kxscenes_mark(kxscenes_detector* detector);

/// Hands out the oldest scene that was not taken. KXSCENES_NOTHING when there is none; ERROR_NULL,
/// ERROR_SIZE.
int32_t kxscenes_take_scene(kxscenes_detector* detector, kxscenes_scene* scene);

/// Hands out the oldest figures that were not taken, at most `capacity` (0 or more), in the order of the
/// frames, and says how many in `*taken`. Only the first structure needs its struct_size; all have that size.
/// A frame's figures are final, and handed out, once two more were compared; those of the last two once the
/// run has ended. 65536 are kept: of more the oldest are lost. KXSCENES_NOTHING when there are none (yet);
/// ERROR_NULL, ERROR_SIZE, ERROR_VALUE.
int32_t kxscenes_take_figures(kxscenes_detector* detector, kxscenes_figures* figures, int32_t capacity,
                              int32_t* taken);

/// Frames pushed in the run so far, also after its end. ERROR_NULL.
int32_t kxscenes_frame_count(kxscenes_detector* detector, int32_t* frames);

/// Ends the run: all figures are final. Scenes and figures can still be taken. Nothing happens when it has
/// ended already. ERROR_NULL.
int32_t kxscenes_end(kxscenes_detector* detector);

/// Ends the run and begins another: frames are counted from 0, and may have another size and format. Drops a
/// mark and all scenes and figures that were not taken. After a seek, for instance. ERROR_NULL.
int32_t kxscenes_restart(kxscenes_detector* detector);

#ifdef __cplusplus
}
#endif

#endif
