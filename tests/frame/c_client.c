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
    (void)roi; (void)rgb; (void)yuv; (void)back; (void)st;
    printf("%s %s white->(255,128,128) black->(0,128,128)\n", v->Name, v->Version);
    return 0;
}
