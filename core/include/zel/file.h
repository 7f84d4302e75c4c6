// Files and the data directory.
#pragma once

#include <zel/config.h>
#include <zel/file/flags.h>
#include <zel/file/kx_dir.h>
#include <zel/file/paths.h>
#include <zel/file/reg_key.h>
#include <zel/file/whole_file.h>
#include <zel/file/win_file.h>
