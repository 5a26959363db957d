/* A C11 program that uses the installed library: exits 0 when the answers are right. */
#include <stdio.h>

#include <tessar/tessar.h>

int main(void)
{
    dpoint2d a = {0.0, 0.0}, b = {10.0, 0.0}, c = {5.0, -5.0}, d = {5.0, 5.0}, x = {0.0, 0.0};
    UTMAT_Droite ab, cd;
    int32_t count = 0, code = 1, detail = 1;
    dpoint2d *table = NULL;
    int32_t n = 0;

    UTMAT_CalculerDroite2Pt(&a, &b, &ab);
    UTMAT_CalculerDroite2Pt(&c, &d, &cd);
    UTMAT_CalculerIntersection2Droite(&ab, &cd, &x, &count);
    UTMAT_GetErreur(&code, &detail);
    MEM_EtendreTableau((void **)&table, sizeof *table, &n);
    MEM_LibererTableau((void **)&table);
    if (code != 0 || count != 1 || x.x != 5.0 || x.y != 0.0 || dc_pi < 3.14 || n != 1 || table) {
        fprintf(stderr, "C consumer: wrong answers\n");
        return 1;
    }
    printf("C consumer: crossing at (%g, %g)\n", x.x, x.y);
    return 0;
}
