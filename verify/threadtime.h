// The processor's time that the calling thread has used, in seconds.
#pragma once

double GetThreadSeconds();
