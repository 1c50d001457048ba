// export.h - marks what the host library exports; the build says how
#pragma once

#ifndef MIVORA_API
#define MIVORA_API
#endif
