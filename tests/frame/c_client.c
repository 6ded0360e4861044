/* A plain C99 caller of the library: compiled, linked and run by the frame test. */
#include <stdio.h>
#include <string.h>

#include "krocc.h"

int main(void) {
    const KroLibraryVersion* v = kroccGetLibVersion();
    KroiSize roi;
    Kro8u rgb[2 * 3] = {255, 255, 255, 0, 0, 0};
    Kro8u yuv[2 * 3];
    Kro8u back[2 * 3];
    KroStatus st;
    if (v == NULL || strcmp(v->targetCpu, "k0") != 0) return 1;
    roi.width = 2;
    roi.height = 1;
    st = kroiRGBToYUV_8u_C3R(rgb, 6, yuv, 6, roi);
    if (st != kroOk) return 2;
    st = kroiYUVToRGB_8u_C3R(yuv, 6, back, 6, roi);
    if (st != kroOk) return 3;
    if (kroiRGBToYUV_8u_C3R(NULL, 6, yuv, 6, roi) != kroErrNullPtr) return 4;
    printf("%s %s white->(%d,%d,%d) black->(%d,%d,%d)\n", v->Name, v->Version, yuv[0], yuv[1], yuv[2],
           yuv[3], yuv[4], yuv[5]);
    return 0;
}
