/* The steps of the road example, one file each. */
#ifndef ROAD_STEPS_H
#define ROAD_STEPS_H

/* Lines through surveyed points, their crossing, offsets and the error word. */
void step_survey_lines(void);

/* Orthometric height of a peg from its GNSS height and a geoid grid. */
void step_geoid_height(void);

/* A transition: straight, clothoid and circular curve, with stations along it. */
void step_transition(void);

#endif
