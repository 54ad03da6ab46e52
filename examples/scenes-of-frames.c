/* Sends frames that this program paints itself to the C interface, and prints where their scenes begin. */
#include <kxscenes.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { width = 64, height = 48 };

static void require(int32_t result, const char* what) {
    if (result < 0) {
        fprintf(stderr, "%s: %s\n", what, kxscenes_error_text(result));
        exit(1);
    }
}

int main(void) {
    kxscenes_settings settings = {.struct_size = sizeof settings};
    require(kxscenes_default_settings(&settings), "the defaults");
    settings.cut_threshold = 20;
    kxscenes_detector* detector = NULL;
    require(kxscenes_create(&settings, &detector), "the detector");

    static uint8_t luma[width * height];
    kxscenes_frame frame = {.struct_size = sizeof frame,
                            .format = KXSCENES_LUMA8,
                            .width = width,
                            .height = height,
                            .stride = width,
                            .data = luma};
    kxscenes_scene scene = {.struct_size = sizeof scene};
    for (int i = 0; i < 100; ++i) {
        memset(luma, i < 30 ? 90 : i < 75 ? 200 : 140, sizeof luma); /* cuts at 30 and 75 */
        frame.time = i * INT64_C(40000000);                          /* 25 frames a second */
        require(kxscenes_push(detector, &frame), "a frame");
        while (kxscenes_take_scene(detector, &scene) == KXSCENES_OK)
            printf("%d at %.3f s\n", (int)scene.frame, (double)scene.time / 1e9);
    }
    kxscenes_destroy(detector);
    return 0;
}
