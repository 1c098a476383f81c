# What the frame compiles, relative to inspectors/; most of it is templates.
set(INSPECTORS_FRAME_SOURCES
  frame/Yielding.cpp
)
