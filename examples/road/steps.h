/* The steps of the road example, one file each. */
#ifndef ROAD_STEPS_H
#define ROAD_STEPS_H

/* Lines through surveyed points, their crossing, offsets and the error word. */
void step_survey_lines(void);

#endif
