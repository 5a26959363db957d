/*
 * Road example: what a road-design program does with Tessar, step by step.
 * Each step prints what it computed.
 */
#include <stdio.h>

#include "steps.h"

int main(void)
{
    step_survey_lines();
    step_geoid_height();
    step_transition();
    return 0;
}
